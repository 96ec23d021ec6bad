// A host tool that never answers: the console says it is waiting, and a quit
// signal still ends it at once, taking the tool with it (that killing the
// console leaves no tool behind: tests/host/runner_end_test.cpp).
#include <signal.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "tests/session/robustness_steps.h"

using namespace SessionTest;

namespace {

using Clock = std::chrono::steady_clock;

// The management tool hangs and ignores SIGTERM; its pid goes to /tmp/tool.
class HungTool {
public:
    explicit HungTool(const SimRoot& root) : root_(root) {
        ReplaceTool(root, "/bin/rux-cmd", "trap '' TERM\necho $$ > $R/tmp/tool\nexec sleep 300");
    }
    ~HungTool() {
        if (pid_ > 0 && !Gone(pid_)) ::kill(pid_, SIGKILL);
    }
    // Waits until the console has started the tool.
    bool started(ConsoleSession& console) {
        if (!console.waitFor([&] { return PidIn(root_, "/tmp/tool") > 0; }, "the tool started"))
            return false;
        pid_ = PidIn(root_, "/tmp/tool");
        return true;
    }
    pid_t pid() const { return pid_; }

private:
    const SimRoot& root_;
    pid_t pid_ = -1;
};

TEST(HungTool, TheScreenSaysPleaseWaitAndAQuitSignalEndsConsoleAndTool) {
    for (int sig : {SIGTERM, SIGHUP}) {
        SCOPED_TRACE(sig);
        SimRoot root;
        HungTool tool(root);
        ConsoleSession console(root, LocalConsole());
        // Logging in; the menu then asks the hung tool about lockdown.
        ASSERT_TRUE(WaitWelcome(console));
        ASSERT_TRUE(KeyThen(console, FKey(2), "Login Name:"));
        EnterCredentials(console, "root", kPassword);
        ASSERT_TRUE(tool.started(console));
        EXPECT_TRUE(console.waitForText("Please, wait ..."));

        const auto signalled = Clock::now();
        console.signal(sig);
        EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
        EXPECT_LT(Clock::now() - signalled, TeskTest::Scaled(std::chrono::seconds(5)));
        EXPECT_TRUE(GoneWithin(tool.pid(), std::chrono::seconds(2)));
        EXPECT_TRUE(root.hasLogLine("Killing process group because the console is ending"));
        EXPECT_TRUE(
            root.hasLogLine("rux-cmd invocation failure: ended because the console is ending"));
        // The session that was opening ends with its records.
        EXPECT_EQ(AuditRecords(root, "tesk.logout").size(), 1u);
        EXPECT_TRUE(root.hasLogLine("User root logged out"));
    }
}

}  // namespace
