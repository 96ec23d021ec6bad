// "poweroff" and "reboot" on the simulated host reach the running console,
// as init's SIGTERM would on a real host: also when the pid file names none
// (a second console that started while another held it), and never a
// process that is not the console.
#include <cstdlib>
#include <string>

#include "tests/session/robustness_steps.h"

using namespace SessionTest;

namespace {

// Runs a tool of the root as a host administrator would, by its path alone.
int RunTool(const SimRoot& root, const std::string& hostPath) {
    return std::system(("env -u TESK_ROOT '" + root.path(hostPath) + "' >/dev/null 2>&1").c_str());
}

bool Started(ConsoleSession& console, const SimRoot& root) {
    return console.waitFor(
        [&] { return root.tryReadFile("/var/run/tesk.pid") == std::to_string(console.pid()); },
        "the pid file names the console");
}

TEST(PowerOff, ReachesTheRunningConsole) {
    for (const char* tool : {"/sbin/poweroff", "/sbin/reboot"}) {
        SCOPED_TRACE(tool);
        SimRoot root;
        ConsoleSession console(root, LocalConsole());
        ASSERT_TRUE(Started(console, root));
        ASSERT_TRUE(WaitWelcome(console));
        EXPECT_EQ(RunTool(root, tool), 0);
        EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
        // A normal end of the console takes its pid file away.
        EXPECT_FALSE(root.exists("/var/run/tesk.pid"));
    }
}

TEST(PowerOff, NeverSignalsAProcessThatIsNotTheConsole) {
    SimRoot root;
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(Started(console, root));
    // Another root's console: not told.
    SimRoot other;
    ConsoleSession stranger(other, LocalConsole());
    ASSERT_TRUE(Started(stranger, other));
    for (const std::string& pid :
         {std::string("99999999999999999999"), std::string("1"), std::to_string(::getpid()),
          std::to_string(console.pid()) + "x", std::to_string(stranger.pid())}) {
        SCOPED_TRACE(pid);
        root.writeFile("/var/run/tesk.pid", pid);
        EXPECT_EQ(RunTool(root, "/sbin/reboot"), 0);
    }
    // The stranger is left alone; this root's console was reached all the same.
    EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
    EXPECT_EQ(stranger.status(), ExitStatus::Running());
}

}  // namespace
