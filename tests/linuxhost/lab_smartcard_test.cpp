// Smart cards on the lab's host with a real pcscd and no reader: the card
// path of the login is not offered (its reason logged), the password login
// works as before, and the cards' watch, started after the first frame,
// holds nothing up.
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

#include "tests/harness/lab_environment.h"
#include "tests/session/session_support.h"

extern char** environ;

namespace {

using namespace SessionTest;

std::string Read(const std::string& path) {
    std::ifstream in(path);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// pcscd in the foreground for the test's life.
class Pcscd {
public:
    Pcscd() {
        char* argv[] = {const_cast<char*>("pcscd"), const_cast<char*>("-f"), nullptr};
        if (::posix_spawnp(&pid_, "pcscd", nullptr, nullptr, argv, environ) != 0) pid_ = -1;
    }
    ~Pcscd() {
        if (pid_ <= 0) return;
        ::kill(pid_, SIGTERM);
        ::waitpid(pid_, nullptr, 0);
    }
    bool Started() const { return pid_ > 0; }

private:
    pid_t pid_ = -1;
};

TEST(LabSmartCard, WithoutAReaderTheCardPathIsNotOfferedAndNothingHangs) {
    const char* root = std::getenv("TESK_ROOT");
    if (std::getenv("LAB_DIR") == nullptr || root == nullptr)
        GTEST_SKIP() << "runs in the lab (scripts/lab.sh)";
    Pcscd pcscd;
    ASSERT_TRUE(pcscd.Started()) << "pcscd is not installed (scripts/install-deps.sh)";
    // The lab's /run/pcscd is the lab root's: pcscd's socket is where the
    // backend looks for it.
    const std::string socket = std::string(root) + "/run/pcscd/pcscd.comm";
    const auto deadline = std::chrono::steady_clock::now() + TeskTest::DefaultTimeout();
    while (!std::filesystem::exists(socket) && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    ASSERT_TRUE(std::filesystem::exists(socket)) << "pcscd made no socket";

    SessionOptions options = LocalConsole();
    TeskTest::PassLabEnvironment(options);
    ConsoleSession console(options);
    ASSERT_TRUE(WaitWelcome(console));
    // The watch loads the library after the first frame and waits in pcscd.
    ASSERT_TRUE(console.waitFor(
        [&] {
            return Read("/proc/" + std::to_string(console.pid()) + "/maps").find("libpcsclite") !=
                   std::string::npos;
        },
        "the cards' watch started"));

    ASSERT_TRUE(LogIn(console)) << console.dump();
    EXPECT_NE(Read(std::string(root) + "/var/log/syslog.log")
                  .find("Smart-card login not offered: No smart-card reader is connected to this "
                        "host."),
              std::string::npos);
}

}  // namespace
