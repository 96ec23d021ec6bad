// A host tool that never answers: the console says it is waiting, a quit
// signal still ends it at once (taking the tool with it), and killing the
// console leaves no tool behind.
#include <signal.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "tests/session/session_support.h"

using namespace SessionTest;

namespace {

using Clock = std::chrono::steady_clock;

// True when the process has ended (gone, or a zombie nobody reaped yet).
bool Gone(pid_t pid) {
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string line;
    if (!std::getline(stat, line)) return true;
    const auto close = line.rfind(')');
    return close != std::string::npos && line.compare(close + 2, 1, "Z") == 0;
}

bool GoneWithin(pid_t pid, std::chrono::seconds limit) {
    const auto deadline = Clock::now() + TeskTest::Scaled(limit);
    while (!Gone(pid)) {
        if (Clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

// The management tool hangs and ignores SIGTERM; its pid goes to /tmp/tool.
class HungTool {
public:
    explicit HungTool(const SimRoot& root) : root_(root) {
        std::filesystem::remove(root.path("/bin/rux-cmd"));
        root.writeFile("/bin/rux-cmd", "#!/bin/sh\ntrap '' TERM\necho $$ > " +
                                           root.path("/tmp/tool") + "\nexec sleep 300\n");
        ::chmod(root.path("/bin/rux-cmd").c_str(), 0755);
    }
    ~HungTool() {
        if (pid_ > 0 && !Gone(pid_)) ::kill(pid_, SIGKILL);
    }
    // Waits until the console has started the tool.
    bool started(ConsoleSession& console) {
        if (!console.waitFor([&] { return !root_.tryReadFile("/tmp/tool").value_or("").empty(); },
                             "the tool started"))
            return false;
        pid_ = std::stoi(*root_.tryReadFile("/tmp/tool"));
        return true;
    }
    pid_t pid() const { return pid_; }

private:
    const SimRoot& root_;
    pid_t pid_ = -1;
};

// Logs in; the menu then asks the hung tool about lockdown.
void LogInTowardsTheMenu(ConsoleSession& console) {
    ASSERT_TRUE(WaitWelcome(console));
    console.key(FKey(2));
    ASSERT_TRUE(WaitSettled(console, "Login Name:"));
    EnterCredentials(console, "root", kPassword);
}

TEST(HungTool, TheScreenSaysPleaseWaitAndAQuitSignalEndsConsoleAndTool) {
    for (int sig : {SIGTERM, SIGHUP}) {
        SCOPED_TRACE(sig);
        SimRoot root;
        HungTool tool(root);
        ConsoleSession console(root, LocalConsole());
        LogInTowardsTheMenu(console);
        ASSERT_TRUE(tool.started(console));
        EXPECT_TRUE(console.waitForText("Please, wait ...", std::chrono::seconds(5)));

        const auto signalled = Clock::now();
        console.signal(sig);
        EXPECT_EQ(console.waitExit(std::chrono::seconds(8)), ExitStatus::Exited(0));
        EXPECT_LT(Clock::now() - signalled, std::chrono::seconds(5));
        EXPECT_TRUE(GoneWithin(tool.pid(), std::chrono::seconds(2)));
        EXPECT_TRUE(root.hasLogLine("Killing process group because the console is ending"));
        EXPECT_TRUE(
            root.hasLogLine("rux-cmd invocation failure: ended because the console is ending"));
        // The session that was opening ends with its records.
        EXPECT_EQ(AuditRecords(root, "tesk.logout").size(), 1u);
        EXPECT_TRUE(root.hasLogLine("User root logged out"));
    }
}

TEST(HungTool, ASlowToolShowsTheNoticeUntilItAnswers) {
    SimRoot root;
    std::filesystem::remove(root.path("/bin/rux-cmd"));
    root.writeFile("/bin/rux-cmd", "#!/bin/sh\nsleep 1\necho true\n");
    ::chmod(root.path("/bin/rux-cmd").c_str(), 0755);
    ConsoleSession console(root, LocalConsole());
    LogInTowardsTheMenu(console);
    EXPECT_TRUE(console.waitForText("Please, wait ..."));
    ASSERT_TRUE(WaitSettled(console, "<Esc> Log Out"));
    EXPECT_FALSE(console.find("Please, wait")) << console.text();
}

TEST(HungTool, AConsoleKilledWithSigkillTakesTheToolWithIt) {
    SimRoot root;
    HungTool tool(root);
    ConsoleSession console(root, LocalConsole());
    LogInTowardsTheMenu(console);
    ASSERT_TRUE(tool.started(console));
    console.signal(SIGKILL);
    EXPECT_EQ(console.waitExit(), ExitStatus::Signalled(SIGKILL));
    EXPECT_TRUE(GoneWithin(tool.pid(), std::chrono::seconds(3))) << "the tool outlived the console";
}

}  // namespace
