// The simulated host's PAM stack, driven through pam_wrapper as the console
// uses it: every login outcome, the conversation rules and password changes.
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

namespace {

class SimulatedPam : public ::testing::Test {
protected:
    void SetUp() override {
        root_.writeFile("/etc/simhost/users",
                        "root:secret1:success\n"
                        "nobody:secret1:denied\n"
                        "old:secret1:expired\n"
                        "picky:secret1:twoprompts\n");
    }

    std::string Pam(const std::string& args) {
        std::string env;
        for (const auto& [k, v] : Sim::PamEnvironment(root_.path())) env += k + "='" + v + "' ";
        std::string cmd = env + PAM_CHECK_BINARY + std::string(" ") + args;
        std::unique_ptr<FILE, int (*)(FILE*)> p(::popen(cmd.c_str(), "r"), ::pclose);
        std::array<char, 256> buf{};
        std::string out;
        while (p && std::fgets(buf.data(), buf.size(), p.get())) out += buf.data();
        while (!out.empty() && out.back() == '\n') out.pop_back();
        return out;
    }
    TeskTest::SimRoot root_;
};

// Columns: authenticate, account check, conversation calls.
TEST_F(SimulatedPam, EachUserGetsItsOutcome) {
    EXPECT_EQ(Pam("login root secret1"), "0 0 1");
    EXPECT_EQ(Pam("login root wrong"), std::to_string(PAM_AUTH_ERR) + " -1 1");
    EXPECT_EQ(Pam("login ghost secret1"), std::to_string(PAM_AUTH_ERR) + " -1 1");
    EXPECT_EQ(Pam("login nobody secret1"), "0 " + std::to_string(PAM_PERM_DENIED) + " 1");
    EXPECT_EQ(Pam("login old secret1"), "0 " + std::to_string(PAM_NEW_AUTHTOK_REQD) + " 1");
    // Two prompts arrive in one call; answering only the first is not enough
    // to be refused here, the console's conversation refuses such calls.
    EXPECT_EQ(Pam("login picky secret1"), "0 0 1");
}

TEST_F(SimulatedPam, PasswordChangeChecksOldAndNewAndClearsExpiry) {
    EXPECT_EQ(Pam("change old wrong newpass1 newpass1"), std::to_string(PAM_AUTHTOK_ERR));
    EXPECT_EQ(Pam("change old secret1 newpass1 newpass2"), std::to_string(PAM_AUTHTOK_ERR));
    EXPECT_EQ(Pam("change old secret1 short short"), std::to_string(PAM_AUTHTOK_ERR));
    EXPECT_EQ(Pam("login old secret1"), "0 " + std::to_string(PAM_NEW_AUTHTOK_REQD) + " 1");

    EXPECT_EQ(Pam("change old secret1 newpass1 newpass1"), "0");
    EXPECT_EQ(Pam("login old secret1"), std::to_string(PAM_AUTH_ERR) + " -1 1");
    EXPECT_EQ(Pam("login old newpass1"), "0 0 1");
}

}  // namespace
