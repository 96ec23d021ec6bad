// How the runner ends children that do not end by themselves: at the time
// limit, when the console is asked to quit, and when the console itself is
// killed; what it tells about how a child ended; and the notice of a slow wait.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "host/runner.h"
#include "platform/waiting.h"
#include "tests/host/host_root.h"
#include "tests/support/process_end.h"

namespace TeskTest {
namespace {

using Clock = std::chrono::steady_clock;
using Tesk::CommandOutcome;

class RunnerEndTest : public HostRootTest {
protected:
    void TearDown() override {
        Tesk::Platform::ResetQuitRequestForTesting();
        Tesk::Platform::SetSlowWaitNotifier({});
        for (pid_t pid : leftovers_)
            if (!Gone(pid)) ::kill(pid, SIGKILL);
        HostRootTest::TearDown();
    }

    // A tool that ignores SIGTERM, starts a helper that ignores it too (its
    // pid in /tmp/helper), and sleeps.
    void WriteStubbornTool(const std::string& before = {}) {
        WriteScript("/bin/tool", before + "trap '' TERM\nsleep 300 &\necho $! > " +
                                     Path("/tmp/helper") + "\nsleep 300");
    }

    CommandOutcome RunTool(int timeLimit = 0) {
        const char* argv[] = {"tool", nullptr};
        out_.assign(Tesk::kCaptureBufferSize, '\0');
        int length = Tesk::kCaptureCapacity;
        auto outcome = Tesk::RunCommandDetailed("/bin/tool", argv, out_.data(), &length, nullptr,
                                                nullptr, nullptr, 0, timeLimit);
        out_.resize(std::max(length, 0));
        return outcome;
    }

    pid_t Helper() {
        pid_t pid = std::stoi(Read("/tmp/helper"));
        leftovers_.push_back(pid);
        return pid;
    }

    std::string out_;
    std::vector<pid_t> leftovers_;
};

TEST_F(RunnerEndTest, TheTimeLimitKillsTheWholeProcessGroup) {
    WriteStubbornTool("echo partial\n");
    auto start = Clock::now();
    auto outcome = RunTool(1);
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(5));
    EXPECT_EQ(outcome.end, CommandOutcome::End::TimedOut);
    EXPECT_EQ(outcome.result(), -1);
    EXPECT_EQ(outcome.describe(), "killed at its time limit of 1 seconds");
    EXPECT_EQ(out_, "partial\n") << "the output so far is kept";
    EXPECT_TRUE(GoneWithin(Helper(), std::chrono::seconds(3))) << "the tool's helper still runs";
    const std::string log = Syslog();
    const auto warning = log.find("Killing process because 1 seconds timeout expired");
    ASSERT_NE(warning, std::string::npos) << log;
    EXPECT_LT(warning, log.find("Run Command did not terminate normally")) << log;
}

TEST_F(RunnerEndTest, AQuitWhileAToolRunsEndsItsGroupAndStartsNoOther) {
    WriteStubbornTool("echo started\n");
    std::thread signal([] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        Tesk::Platform::NoteQuitRequest();
    });
    auto start = Clock::now();
    auto outcome = RunTool();
    signal.join();
    // SIGTERM is ignored: SIGKILL follows a second later.
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(4));
    EXPECT_EQ(outcome.end, CommandOutcome::End::Interrupted);
    EXPECT_EQ(outcome.describe(), "ended because the console is ending");
    EXPECT_EQ(out_, "started\n");
    EXPECT_TRUE(Logged("Killing process group because the console is ending"));
    EXPECT_TRUE(GoneWithin(Helper(), std::chrono::seconds(3)));

    // The console is on its way out: nothing more is started.
    WriteScript("/bin/tool", "echo ran > " + Path("/tmp/ran"));
    EXPECT_EQ(RunTool().end, CommandOutcome::End::Interrupted);
    EXPECT_EQ(Read("/tmp/ran"), "");
    EXPECT_TRUE(Logged("Not starting " + Path("/bin/tool") + ": the console is ending"));
}

TEST_F(RunnerEndTest, AConsoleKilledWithSigkillLeavesNoToolBehind) {
    // The tool ignores SIGTERM and keeps its pid (exec) in /tmp/tool.
    WriteScript("/bin/tool", "trap '' TERM\necho $$ > " + Path("/tmp/tool") + "\nexec sleep 300");
    pid_t console = ::fork();
    ASSERT_GE(console, 0);
    if (console == 0) {
        const char* argv[] = {"tool", nullptr};
        Tesk::RunCommand("/bin/tool", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0);
        ::_exit(0);
    }
    const auto deadline = Clock::now() + std::chrono::seconds(10);
    while (Read("/tmp/tool").empty() && Clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    ASSERT_NE(Read("/tmp/tool"), "");
    const pid_t tool = std::stoi(Read("/tmp/tool"));
    leftovers_.push_back(tool);
    ::kill(console, SIGKILL);
    ::waitpid(console, nullptr, 0);
    EXPECT_TRUE(GoneWithin(tool, std::chrono::seconds(3))) << "the tool outlived the console";
}

TEST_F(RunnerEndTest, TheOutcomeTellsHowTheToolEnded) {
    WriteScript("/bin/tool", "exit 3");
    auto outcome = RunTool();
    EXPECT_EQ(outcome.end, CommandOutcome::End::Exited);
    EXPECT_EQ(outcome.result(), 3);
    EXPECT_EQ(outcome.describe(), "exit status 3");

    WriteScript("/bin/tool", "kill -TERM $$");
    outcome = RunTool();
    EXPECT_EQ(outcome.end, CommandOutcome::End::Signalled);
    EXPECT_EQ(outcome.signal, SIGTERM);
    EXPECT_EQ(outcome.describe(), "ended by signal 15 (Terminated)");

    const char* argv[] = {"missing", nullptr};
    outcome = Tesk::RunCommandDetailed("/bin/missing", argv, nullptr, nullptr, nullptr, nullptr,
                                       nullptr, 0, 0);
    EXPECT_EQ(outcome.end, CommandOutcome::End::NotStarted);
    EXPECT_EQ(outcome.describe(), "could not be started: No such file or directory");

    // Its own process group, no signal ignored or blocked.
    WriteScript("/bin/tool",
                "read -r _ _ _ _ pgrp _ < /proc/$$/stat\n[ \"$pgrp\" = \"$$\" ] || exit 1\n"
                "exec grep -E 'Sig(Ign|Blk)' /proc/self/status");
    struct sigaction ignore {
    }, saved{};
    ignore.sa_handler = SIG_IGN;
    ::sigaction(SIGUSR1, &ignore, &saved);
    outcome = RunTool();
    ::sigaction(SIGUSR1, &saved, nullptr);
    EXPECT_EQ(outcome.result(), 0);
    EXPECT_EQ(out_, "SigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n");
}

TEST_F(RunnerEndTest, ManagementQueryAnswersOnlyWhenTheToolEndedByItself) {
    struct Case {
        const char* body;
        bool answer;
        const char* logged;
    };
    const Case cases[] = {
        {"printf true; exit 3", true, "rux-cmd invocation failure: exit status 3"},
        {"printf true; kill -KILL $$", false, "rux-cmd invocation failure: ended by signal 9"},
    };
    for (const auto& c : cases) {
        WriteScript("/bin/rux-cmd", c.body);
        EXPECT_EQ(Tesk::RuxCmdGet("ruxsvc/auth/lockdown_is_enabled"), c.answer) << c.body;
        EXPECT_TRUE(Logged(c.logged)) << c.body << "\n" << Syslog();
    }
    EXPECT_FALSE(Logged("invocation failure: Success"));

    // Killed while it waits (the console ending): no answer, whatever it said.
    WriteScript("/bin/rux-cmd", "printf true; exec sleep 300");
    std::thread signal([] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        Tesk::Platform::NoteQuitRequest();
    });
    EXPECT_FALSE(Tesk::RuxCmdGet("ruxsvc/auth/lockdown_is_possible"));
    signal.join();
    EXPECT_TRUE(Logged("rux-cmd invocation failure: ended because the console is ending"));
}

TEST_F(RunnerEndTest, AWaitLongerThanAMomentIsAnnouncedOnTheNotifiersThreadOnly) {
    std::vector<bool> calls;
    Tesk::Platform::SetSlowWaitNotifier([&](bool waiting) { calls.push_back(waiting); });
    WriteScript("/bin/tool", "exit 0");
    RunTool();
    EXPECT_TRUE(calls.empty());

    WriteScript("/bin/tool", "sleep 1");
    RunTool();
    EXPECT_EQ(calls, (std::vector<bool>{true, false}));

    calls.clear();
    std::thread worker([&] { RunTool(); });
    worker.join();
    EXPECT_TRUE(calls.empty());
}

}  // namespace
}  // namespace TeskTest
