// PAM is loaded by the first login, not at start: libpam and the libraries it
// brings stay out of every start of the console, and a libpam that cannot be
// loaded fails the login instead of the console.
#include <fstream>
#include <iterator>
#include <string>

#include "tests/session/session_support.h"

using namespace SessionTest;

namespace {

// The process's memory map: every library it has loaded, by path.
std::string Maps(const ConsoleSession& console) {
    std::ifstream maps("/proc/" + std::to_string(console.pid()) + "/maps");
    return std::string(std::istreambuf_iterator<char>(maps), {});
}

TEST(PamLoading, OnlyALoginLoadsPamAndAPreloadedWrapperStillAnswers) {
    SimRoot root;
    ConsoleSession console(root, RemoteShell());
    ASSERT_TRUE(WaitWelcome(console));
    const std::string atStart = Maps(console);
    for (const char* library : {"/libpam.so", "/libaudit.so", "/libcap-ng.so"})
        EXPECT_EQ(atStart.find(library), std::string::npos) << library << " loaded at start";
    // The login goes through pam_wrapper to the root's users: the root's own
    // password opens it, which the machine's accounts would refuse.
    ASSERT_TRUE(LogIn(console));
    EXPECT_NE(Maps(console).find("/libpam.so"), std::string::npos);
}

TEST(PamLoading, ALibpamThatCannotBeLoadedFailsTheLoginWithALogLine) {
    SimRoot root;
    root.writeFile("/tmp/lib/libpam.so.0", "not a library\n");
    SessionOptions options = RemoteShell();
    options.env.emplace_back("LD_LIBRARY_PATH", root.path("/tmp/lib"));
    ConsoleSession console(root, options);
    ASSERT_TRUE(LogInRefused(console));
    EXPECT_TRUE(root.hasLogLine("Loading PAM failed: "));
    EXPECT_EQ(console.status(), ExitStatus::Running());
}

}  // namespace
