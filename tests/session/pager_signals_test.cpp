// The console while the pager shows a log: a resize the pager saw ends the
// console when the pager returns, as any resize does, and a quit signal ends
// a pager that ignores it (with what it started) and then the console.
#include <string>

#include "tests/session/robustness_steps.h"

using namespace SessionTest;

namespace {

constexpr int kCols = 100, kRows = 30;

// Logs in and opens the syslog in the pager; true once the pager runs.
bool OpenSyslog(ConsoleSession& console, const SimRoot& root) {
    if (!LogIn(console)) return false;
    if (!GoToEntry(console, "View System Logs")) return false;
    console.key("1");
    return console.waitFor([&] { return PidIn(root, "/tmp/pager") > 0; }, "the pager runs");
}

TEST(PagerSignals, AResizeWhileThePagerRunsEndsTheConsoleWhenItReturns) {
    SimRoot root;
    // The pager ends when the test says so.
    ReplaceTool(root, "/bin/less",
                "echo $$ > $R/tmp/pager\nwhile [ ! -e $R/tmp/go ]; do sleep 0.05; done");
    ConsoleSession console(root, LocalConsole(kCols, kRows));
    ASSERT_TRUE(OpenSyslog(console, root));
    console.resize(90, 25);
    root.writeFile("/tmp/go", "");
    EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
    EXPECT_EQ(AuditRecords(root, "tesk.logout").size(), 1u);
}

TEST(PagerSignals, AQuitSignalEndsAStubbornPagerAndTheConsole) {
    SimRoot root;
    ReplaceTool(root, "/bin/less",
                "trap '' TERM INT HUP\necho $$ > $R/tmp/pager\nsleep 300 &\n"
                "echo $! > $R/tmp/helper\nwhile :; do sleep 1; done");
    ConsoleSession console(root, LocalConsole(kCols, kRows));
    ASSERT_TRUE(OpenSyslog(console, root));
    ASSERT_TRUE(console.waitFor([&] { return PidIn(root, "/tmp/helper") > 0; }, "helper"));
    const pid_t pager = PidIn(root, "/tmp/pager"), helper = PidIn(root, "/tmp/helper");
    console.signal(SIGTERM);
    EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
    EXPECT_TRUE(GoneWithin(pager, std::chrono::seconds(2)));
    EXPECT_TRUE(GoneWithin(helper, std::chrono::seconds(2)));
    EXPECT_TRUE(root.hasLogLine("Ending the pager because the console is ending"));
    EXPECT_EQ(AuditRecords(root, "tesk.logout").size(), 1u);
    for (pid_t pid : {pager, helper})
        if (!Gone(pid)) ::kill(pid, SIGKILL);
}

}  // namespace
