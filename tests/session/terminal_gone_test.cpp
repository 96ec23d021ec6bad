// A terminal that goes away under a console that does not lead its session
// (started by "tesk-sim run"): no SIGHUP reaches the console, yet it must end
// instead of spinning on the dead terminal, deaf to every signal.
#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "tests/session/robustness_steps.h"

using namespace SessionTest;

namespace {

TEST(TerminalGone, AConsoleWhoseTerminalHangsUpEnds) {
    SimRoot root;
    int master = ::posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_GE(master, 0);
    ASSERT_EQ(::grantpt(master), 0);
    ASSERT_EQ(::unlockpt(master), 0);
    const std::string slave = ::ptsname(master);
    const std::string sim = TESK_SIM_BINARY;
    const pid_t leader = ::fork();
    ASSERT_GE(leader, 0);
    if (leader == 0) {
        ::setsid();
        ::close(master);  // only the test holds the terminal's other end
        const int fd = ::open(slave.c_str(), O_RDWR);  // the controlling terminal
        if (fd < 0) ::_exit(100);
        for (int i = 0; i < 3; ++i) ::dup2(fd, i);
        ::setenv("TERM", "xterm", 1);
        ::execl(sim.c_str(), "tesk-sim", "run", root.path().c_str(), static_cast<char*>(nullptr));
        ::_exit(127);
    }
    // The screen is read and dropped, so that the console never waits on it.
    std::atomic<bool> reading{true};
    std::atomic<size_t> received{0};
    std::thread drain([&] {
        char buffer[4096];
        while (reading) {
            pollfd fd{master, POLLIN, 0};
            if (::poll(&fd, 1, 50) <= 0) continue;
            const ssize_t n = ::read(master, buffer, sizeof buffer);
            if (n <= 0) break;
            received += static_cast<size_t>(n);
        }
    });
    pid_t console = -1;
    const auto deadline = std::chrono::steady_clock::now() + TeskTest::DefaultTimeout();
    while (std::chrono::steady_clock::now() < deadline &&
           (console = PidIn(root, "/var/run/tesk.pid")) <= 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_GT(console, 0);
    EXPECT_TRUE(root.waitForLogLine("Starting TESK"));
    // The first frame is on its way, and the console has gone quiet after it.
    size_t seen = 0;
    for (int quiet = 0; std::chrono::steady_clock::now() < deadline && quiet < 10;) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        const size_t now = received;
        quiet = now > 0 && now == seen ? quiet + 1 : 0;
        seen = now;
    }
    EXPECT_GT(seen, 0u) << "no frame reached the terminal";

    reading = false;
    drain.join();
    ::close(master);  // the terminal hangs up
    if (console > 0) {
        EXPECT_TRUE(GoneWithin(console, std::chrono::seconds(5)))
            << "the console still runs after its terminal went away:\n"
            << root.logTail();
        if (!Gone(console)) ::kill(console, SIGKILL);
    }
    ::kill(leader, SIGKILL);
    ::waitpid(leader, nullptr, 0);
}

}  // namespace
