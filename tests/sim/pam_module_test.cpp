// The simulated host's PAM stack, driven through pam_wrapper as the console
// uses it: a password change after authentication, and the user file kept
// private and inside the root (the login outcomes: the login screen tests).
#include <security/pam_appl.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "sim/host.h"
#include "tests/harness/sim_root.h"

namespace fs = std::filesystem;
using TeskTest::Json;

namespace {

class SimulatedPam : public ::testing::Test {
protected:
    void SetUp() override {
        const std::string hash = TeskTest::PasswordHash("secret1");
        root_.writeFile("/etc/simhost/users", "root:" + hash + ":success\n" + "nobody:" + hash +
                                                  ":denied\n" + "old:" + hash + ":expired\n" +
                                                  "picky:" + hash + ":twoprompts\n" +
                                                  "open::success\n" + "clear:secret1:success\n");
    }

    // Runs the check program with args; shell commands in `before` run first
    // in the same process, which then becomes the check program ($$ is its pid).
    std::string Pam(const std::string& args, const std::string& before = "") {
        std::string env;
        for (const auto& [k, v] : Sim::PamEnvironment(root_.path())) env += k + "='" + v + "' ";
        std::string cmd = before + "exec env " + env + PAM_CHECK_BINARY + std::string(" ") + args;
        std::unique_ptr<FILE, int (*)(FILE*)> p(::popen(cmd.c_str(), "r"), ::pclose);
        std::array<char, 256> buf{};
        std::string out;
        while (p && std::fgets(buf.data(), buf.size(), p.get())) out += buf.data();
        while (!out.empty() && out.back() == '\n') out.pop_back();
        return out;
    }
    TeskTest::SimRoot root_;
};

TEST_F(SimulatedPam, AfterAuthenticationAChangeAsksOnlyTheNewPasswordTwice) {
    // Current (to authenticate), new, new again: three calls in all.
    EXPECT_EQ(Pam("authchange old secret1 Newpass1 Newpass1"),
              "0 " + std::to_string(PAM_NEW_AUTHTOK_REQD) + " 0 3");
    EXPECT_EQ(Pam("login old Newpass1"), "0 0 1");
    EXPECT_EQ(Pam("authchange root secret1 Newpass1 other12"),
              "0 0 " + std::to_string(PAM_AUTHTOK_ERR) + " 3");
}

TEST_F(SimulatedPam, TheUserFileStaysPrivateAndInsideTheRoot) {
    // A link planted where a temporary file with a predictable name would be
    // made, and a user file that is itself a link.
    const std::string db = root_.path("/etc/simhost/users");
    const std::string outside = root_.path("") + "-outside";
    std::ofstream(outside) << "untouched\n";
    EXPECT_EQ(Pam("change root secret1 Newpass1 Newpass1",
                  "ln -s '" + outside + "' '" + db + ".tmp.'$$ && "),
              "0");
    EXPECT_EQ(Pam("login root Newpass1"), "0 0 1");
    std::ifstream in(outside);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "untouched\n");
    EXPECT_EQ(fs::status(db).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    for (const auto& entry : fs::directory_iterator(fs::path(db).parent_path()))
        if (entry.path().filename().string().starts_with("users.tmp.") && !entry.is_symlink())
            ADD_FAILURE() << "left behind: " << entry.path();

    fs::rename(db, outside);
    fs::create_symlink(outside, db);
    EXPECT_EQ(Pam("login root Newpass1"), std::to_string(PAM_AUTH_ERR) + " -1 1");
    fs::remove(outside);
}

}  // namespace
