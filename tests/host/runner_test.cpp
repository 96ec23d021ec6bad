// The command runner against real children.
#include <stdlib.h>

#include <chrono>
#include <string>

#include "host/command_line.h"
#include "host/runner.h"
#include "hostctl/exception.h"
#include "tests/host/host_root.h"

namespace TeskTest {
namespace {

using Clock = std::chrono::steady_clock;

class RunnerTest : public HostRootTest {
protected:
    // Runs the script at /bin/child with both streams captured.
    int Run(const std::string& body, int timeLimit = 0, const std::string& input = {}) {
        WriteScript("/bin/child", body);
        const char* argv[] = {"child", nullptr};
        outLength = errLength = Tesk::kCaptureCapacity;
        out.assign(Tesk::kCaptureBufferSize, '\0');
        err.assign(Tesk::kCaptureBufferSize, '\0');
        int rc = Tesk::RunCommand("/bin/child", argv, out.data(), &outLength, err.data(),
                                  &errLength, input.empty() ? nullptr : input.data(),
                                  static_cast<int>(input.size()), timeLimit);
        out.resize(std::max(outLength, 0));
        err.resize(std::max(errLength, 0));
        return rc;
    }

    std::string out, err;
    int outLength = 0, errLength = 0;
};

TEST_F(RunnerTest, ExitStatusAndAbnormalEnd) {
    EXPECT_EQ(Run("exit 3"), 3);
    EXPECT_EQ(Run("echo hello; echo oops >&2; exit 0"), 0);
    EXPECT_EQ(out, "hello\n");
    EXPECT_EQ(err, "oops\n");
    EXPECT_FALSE(Logged("Run Command did not terminate normally"));

    // A child under its limit ends without a fixed poll interval.
    auto start = Clock::now();
    EXPECT_EQ(Run("echo fast", Tesk::kQueryTimeLimit), 0);
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(2));
    EXPECT_FALSE(Logged("Killing process"));

    EXPECT_EQ(Run("kill -TERM $$; sleep 5"), -1);
    EXPECT_TRUE(Logged("Run Command did not terminate normally"));
}

TEST_F(RunnerTest, LongOutputIsCutWithoutBlockingTheChild) {
    // A megabyte on each stream is far more than a pipe holds; the limit only
    // turns a hang into a failure.
    EXPECT_EQ(
        Run("head -c 1048576 /dev/zero | tr '\\0' x; head -c 1048576 /dev/zero | tr '\\0' y >&2",
            30),
        0);
    EXPECT_EQ(outLength, 255);
    EXPECT_EQ(out, std::string(255, 'x'));
    EXPECT_EQ(errLength, 255);
    EXPECT_EQ(err, std::string(255, 'y'));
}

TEST_F(RunnerTest, GrandchildHoldingThePipeDoesNotHoldUpTheResult) {
    // Waiting for the grandchild would take its 30 seconds.
    auto start = Clock::now();
    EXPECT_EQ(Run("sleep 30 & echo done"), 0);
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(15));
    EXPECT_EQ(out, "done\n");
}

TEST_F(RunnerTest, EnvironmentIsExactlyPythonHome) {
    std::filesystem::create_symlink("/usr/bin/env", Path("/bin/env"));
    const char* argv[] = {"env", nullptr};
    char buffer[Tesk::kCaptureBufferSize] = {};
    int length = Tesk::kCaptureCapacity;
    ASSERT_EQ(::setenv("TESK_RUNNER_TEST_MARKER", "leak", 1), 0);
    EXPECT_EQ(Tesk::RunCommand("/bin/env", argv, buffer, &length, nullptr, nullptr, nullptr, 0, 0),
              0);
    ::unsetenv("TESK_RUNNER_TEST_MARKER");
    EXPECT_EQ(std::string(buffer, std::max(length, 0)), "PYTHONHOME=/\n");
}

TEST_F(RunnerTest, InputReachesTheChildAndAnEarlyExitIsHarmless) {
    EXPECT_EQ(Run("cat", 0, "secret\nline two\n"), 0);
    EXPECT_EQ(out, "secret\nline two\n");
    // A child that never reads its input: writing must neither block nor
    // end this process by SIGPIPE.
    EXPECT_EQ(Run("exit 4", 0, std::string(1 << 20, 'i')), 4);
}

TEST_F(RunnerTest, LoggedRunnersReportOutcome) {
    WriteScript("/bin/child", "echo out; echo err >&2; exit 2");
    const char* argv[] = {"child", "-x", "value", nullptr};
    EXPECT_EQ(Tesk::RunCommandLogged("/bin/child", argv), 2);
    EXPECT_TRUE(Logged("Command \"child -x value\" failed (rc=2): (stdout=out\n, stderr=err\n)"))
        << Syslog();

    WriteScript("/bin/child", "exit 0");
    EXPECT_EQ(Tesk::RunCommandLogged("/bin/child", argv), 0);
    EXPECT_TRUE(Logged("Command \"child -x value\" succeeded"));
}

TEST_F(RunnerTest, HostControlExecSplitsLogsAndThrows) {
    WriteRecorder("/bin/zrkping", "$([ \"$3\" = 10.0.0.1 ] && echo 0 || echo 1)");
    EXPECT_EQ(Tesk::RunCommandLine("/bin/zrkping -c 3  10.0.0.1", false, true, false), 0);
    EXPECT_EQ(Calls(), "-c 3 10.0.0.1\n");
    EXPECT_TRUE(Logged("Command \"zrkping -c 3 10.0.0.1\" succeeded")) << Syslog();

    EXPECT_EQ(Tesk::RunCommandLine("/bin/zrkping -c 3 10.0.0.2", false, true, false), 1);
    EXPECT_TRUE(Logged("Command \"zrkping -c 3 10.0.0.2\" failed (rc=1)"));
    EXPECT_THROW(Tesk::RunCommandLine("/bin/zrkping -c 3 10.0.0.2", false, false, true),
                 HostCtl::Lib::HostCtlException);
    EXPECT_EQ(Tesk::RunCommandLine("   ", false, false, false), -1);
    EXPECT_EQ(Tesk::RunCommandLine("exit 5", true, false, false), 5);
    // The host's shell finds tools without a path in the host's own folders.
    EXPECT_EQ(Tesk::RunShellCommand("backup.sh 0"), 0);
    EXPECT_EQ(Sim::Get("/configBackup/runs"), Sim::Json(1));
}

}  // namespace
}  // namespace TeskTest
