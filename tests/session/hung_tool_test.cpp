// A host tool that never answers: the console says it is waiting, and a quit
// signal still ends it at once, taking the tool with it (that killing the
// console leaves no tool behind: tests/host/runner_end_test.cpp).
#include <signal.h>

#include <chrono>

#include "tests/session/robustness_steps.h"

using namespace SessionTest;

namespace {

using Clock = std::chrono::steady_clock;

TEST(HungTool, TheScreenSaysPleaseWaitAndAQuitSignalEndsConsoleAndTool) {
    for (int sig : {SIGTERM, SIGHUP}) {
        SCOPED_TRACE(sig);
        SimRoot root;
        // The management tool hangs and ignores SIGTERM.
        ReplaceTool(root, "/bin/rux-cmd", "trap '' TERM\necho $$ > $R/tmp/tool\nexec sleep 300");
        ConsoleSession console(root, LocalConsole());
        // Logging in; the menu then asks the hung tool about lockdown.
        ASSERT_TRUE(WaitWelcome(console));
        ASSERT_TRUE(KeyThen(console, FKey(2), "Login Name:"));
        EnterCredentials(console, "root", kPassword);
        ASSERT_TRUE(console.waitFor([&] { return PidIn(root, "/tmp/tool") > 0; }, "the tool"));
        const pid_t tool = PidIn(root, "/tmp/tool");
        EXPECT_TRUE(console.waitForText("Please, wait ..."));

        const auto signalled = Clock::now();
        console.signal(sig);
        EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
        EXPECT_LT(Clock::now() - signalled, TeskTest::Scaled(std::chrono::seconds(5)));
        EXPECT_TRUE(GoneWithin(tool, std::chrono::seconds(2)));
        if (!Gone(tool)) ::kill(tool, SIGKILL);
        EXPECT_TRUE(root.hasLogLine("Killing process group because the console is ending"));
        EXPECT_TRUE(
            root.hasLogLine("rux-cmd invocation failure: ended because the console is ending"));
        // The session that was opening ends with its records.
        EXPECT_EQ(AuditRecords(root, "tesk.logout").size(), 1u);
        EXPECT_TRUE(root.hasLogLine("User root logged out"));
    }
}

}  // namespace
