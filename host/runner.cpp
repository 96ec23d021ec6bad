#include "host/runner.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstring>
#include <optional>

#include "platform/hostroot.h"
#include "platform/syslog.h"
#include "platform/waiting.h"

namespace Tesk {
namespace {

using Clock = std::chrono::steady_clock;

// Without a process descriptor (old kernels) the child's end is noticed by
// looking every this often.
constexpr int kFallbackPollMs = 20;
// Reads per wake-up while the child runs, and after it has ended: enough for
// any capture, bounded so that a grandchild still writing cannot keep us here.
constexpr size_t kDrainWhileRunning = 64 * 1024;
constexpr size_t kDrainAfterExit = 1024 * 1024;
// How long a tool's process group has to end after SIGTERM, when the console
// is ending, before SIGKILL follows.
constexpr std::chrono::milliseconds kTermGrace{1000};

void CloseFd(int& fd) {
    if (fd >= 0) ::close(fd);
    fd = -1;
}

// One captured stream: the read end of a pipe and the caller's buffer.
struct Capture {
    int fd = -1;
    char* buffer = nullptr;  // none: everything is read and dropped
    int capacity = 0;
    int count = 0;
    bool failed = false;

    // Reads what the pipe holds now without blocking, at most `budget` bytes.
    // Closes the pipe at end of file or on a read error.
    void Drain(size_t budget) {
        char scratch[4096];
        while (fd >= 0 && budget > 0) {
            char* into = scratch;
            size_t room = sizeof scratch;
            if (buffer && !failed && count < capacity) {
                into = buffer + count;
                room = static_cast<size_t>(capacity - count);
            }
            room = std::min(room, budget);
            ssize_t n = ::read(fd, into, room);
            if (n > 0) {
                if (into != scratch) count += static_cast<int>(n);
                budget -= static_cast<size_t>(n);
                continue;
            }
            if (n < 0 && errno == EINTR) continue;
            if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return;
            if (n < 0) failed = true;
            CloseFd(fd);
        }
    }
};

// The child's standard input: the bytes still to write.
struct Feed {
    int fd = -1;
    const char* data = nullptr;
    size_t left = 0;
    bool brokenPipe = false;

    void Write() {
        while (fd >= 0 && left > 0) {
            ssize_t n = ::write(fd, data, left);
            if (n > 0) {
                data += n;
                left -= static_cast<size_t>(n);
                continue;
            }
            if (n < 0 && errno == EINTR) continue;
            if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return;
            if (n < 0 && errno == EPIPE) brokenPipe = true;
            break;  // any other failure, or nothing written: stop feeding
        }
        CloseFd(fd);
    }
};

bool SetNonBlocking(int fd) {
    int flags = ::fcntl(fd, F_GETFL);
    return flags >= 0 && ::fcntl(fd, F_SETFL, flags | O_NONBLOCK) == 0;
}

// Starts the child with its standard streams on the given pipe ends, in a
// process group of its own (so that it can be ended together with whatever it
// starts), with a clean signal mask and default signal actions (the console
// blocks its signals for its signal thread; a tool must not inherit that), and
// bound to the console's life: when the thread that started it dies (the
// console killed with SIGKILL) the kernel kills the child.
//
// fork and exec rather than posix_spawn, because the death signal can only be
// asked for in between. Between the two the child makes only
// async-signal-safe calls. Returns the child's pid, or -1 with *error set
// (also when exec failed: the child reports its errno through a pipe).
pid_t Spawn(const std::string& path, const char* const argv[], int in, int out, int err,
            int* error) {
    static const char* const environment[] = {"PYTHONHOME=/", nullptr};
    int report[2] = {-1, -1};
    if (::pipe2(report, O_CLOEXEC) != 0) {
        *error = errno;
        return -1;
    }
    const pid_t parent = ::getpid();
    const pid_t pid = ::fork();
    if (pid < 0) {
        *error = errno;
        ::close(report[0]);
        ::close(report[1]);
        return -1;
    }
    if (pid == 0) {
        ::setpgid(0, 0);
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() != parent) ::_exit(127);  // the console died before the line above
        // Above the standard descriptors first, so that no dup2 overwrites
        // another stream's pipe.
        const int streams[3] = {::fcntl(in, F_DUPFD_CLOEXEC, 3), ::fcntl(out, F_DUPFD_CLOEXEC, 3),
                                ::fcntl(err, F_DUPFD_CLOEXEC, 3)};
        int failure = 0;
        for (int i = 0; i < 3 && failure == 0; ++i)
            if (streams[i] < 0 || ::dup2(streams[i], i) < 0) failure = errno;
        if (failure == 0) {
            struct sigaction defaults {};
            defaults.sa_handler = SIG_DFL;
            sigemptyset(&defaults.sa_mask);
            for (int sig = 1; sig < NSIG; ++sig)
                if (sig != SIGKILL && sig != SIGSTOP) ::sigaction(sig, &defaults, nullptr);
            sigset_t none;
            sigemptyset(&none);
            ::sigprocmask(SIG_SETMASK, &none, nullptr);
            ::execve(path.c_str(), const_cast<char* const*>(argv),
                     const_cast<char* const*>(environment));
            failure = errno;
        }
        ssize_t ignored = ::write(report[1], &failure, sizeof failure);
        (void)ignored;
        ::_exit(127);
    }
    // The parent sets the group too, so that it exists before anyone signals
    // it (after the exec this fails harmlessly).
    ::setpgid(pid, pid);
    ::close(report[1]);
    int childError = 0;
    ssize_t n = 0;
    while ((n = ::read(report[0], &childError, sizeof childError)) < 0 && errno == EINTR) {
    }
    ::close(report[0]);
    if (n > 0) {
        while (::waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
        }
        *error = childError;
        return -1;
    }
    return pid;
}

int MillisecondsUntil(Clock::time_point deadline) {
    auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return static_cast<int>(std::clamp<long long>(left, 0, INT_MAX));
}

// Keeps SIGPIPE from ending the console while it feeds a child that may
// already have gone; a SIGPIPE raised meanwhile is taken off again.
class SigpipeGuard {
public:
    SigpipeGuard() {
        sigemptyset(&pipeSet_);
        sigaddset(&pipeSet_, SIGPIPE);
        ::pthread_sigmask(SIG_BLOCK, &pipeSet_, &saved_);
    }
    ~SigpipeGuard() {
        if (raised) {
            timespec zero{0, 0};
            while (::sigtimedwait(&pipeSet_, nullptr, &zero) < 0 && errno == EINTR) {
            }
        }
        ::pthread_sigmask(SIG_SETMASK, &saved_, nullptr);
    }
    SigpipeGuard(const SigpipeGuard&) = delete;
    SigpipeGuard& operator=(const SigpipeGuard&) = delete;
    bool raised = false;

private:
    sigset_t pipeSet_, saved_;
};

int ClampedCount(int count) {
    return std::clamp(count, 0, kCaptureCapacity);
}

}  // namespace

std::string CommandOutcome::describe() const {
    switch (end) {
        case End::Exited:
            return "exit status " + std::to_string(status);
        case End::Signalled: {
            const char* name = ::strsignal(signal);
            return "ended by signal " + std::to_string(signal) + " (" + (name ? name : "?") + ")";
        }
        case End::TimedOut:
            return "killed at its time limit of " + std::to_string(timeLimit) + " seconds";
        case End::Interrupted:
            return "ended because the console is ending";
        case End::NotStarted:
            return std::string("could not be started: ") + std::strerror(error);
        case End::WaitFailed:
            return std::string("waiting for it failed: ") + std::strerror(error);
    }
    return {};
}

CommandOutcome RunCommandDetailed(const char* path, const char* const argv[], char* output,
                                  int* outputLength, char* error, int* errorLength,
                                  const char* input, int inputLength, int timeLimit) {
    CommandOutcome outcome;
    outcome.timeLimit = timeLimit;
    const std::string program = Platform::HostPath(path ? path : "");
    if (Platform::QuitRequested()) {
        // The console is on its way out: no new tool is started.
        outcome.end = CommandOutcome::End::Interrupted;
        Platform::Log(LOG_WARNING, "Not starting %s: the console is ending", program.c_str());
        return outcome;
    }
    int in[2] = {-1, -1}, out[2] = {-1, -1}, err[2] = {-1, -1};
    auto closeAll = [&] {
        for (int* p : {in, out, err}) {
            CloseFd(p[0]);
            CloseFd(p[1]);
        }
    };
    if (::pipe2(in, O_CLOEXEC) != 0 || ::pipe2(out, O_CLOEXEC) != 0 ||
        ::pipe2(err, O_CLOEXEC) != 0) {
        outcome.error = errno;
        closeAll();
        return outcome;
    }
    pid_t pid = Spawn(program, argv, in[0], out[1], err[1], &outcome.error);
    if (pid < 0) {
        closeAll();
        return outcome;
    }
    CloseFd(in[0]);
    CloseFd(out[1]);
    CloseFd(err[1]);

    Capture captures[2];
    captures[0].fd = out[0];
    captures[1].fd = err[0];
    if (output && outputLength) captures[0].buffer = output, captures[0].capacity = *outputLength;
    if (error && errorLength) captures[1].buffer = error, captures[1].capacity = *errorLength;
    Feed feed;
    feed.fd = in[1];
    if (input && inputLength > 0) {
        feed.data = input;
        feed.left = static_cast<size_t>(inputLength);
    }
    for (auto& c : captures) SetNonBlocking(c.fd);
    SetNonBlocking(feed.fd);
    SigpipeGuard sigpipe;
    feed.Write();

    // Wait for the child while draining its output, so that it never blocks
    // on a full pipe; the kernel tells us through a process descriptor when it
    // ends, and through the quit descriptor when the console is to end.
    int pidfd = static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
    const int quitFd = Platform::QuitDescriptor();
    const Clock::time_point started = Clock::now();
    const bool limited = timeLimit > 0;
    const Clock::time_point deadline = started + std::chrono::seconds(limited ? timeLimit : 0);
    const Clock::time_point slowAt =
        started + std::chrono::milliseconds(Platform::kSlowWaitMilliseconds);
    // Set when the console is to end: when SIGKILL follows the SIGTERM.
    std::optional<Clock::time_point> killAt;
    bool killing = false;  // SIGKILL sent to the group
    bool toldSlow = false;
    bool ended = false;
    int status = 0;

    // Once the child has ended (its zombie keeps the group's id from being
    // reused) the rest of its group goes with it, then the child is reaped.
    auto reap = [&](bool endGroup) {
        if (endGroup) ::kill(-pid, SIGKILL);
        int st = 0;
        pid_t w;
        while ((w = ::waitpid(pid, &st, 0)) < 0 && errno == EINTR) {
        }
        if (w == pid) {
            status = st;
        } else {
            outcome.end = CommandOutcome::End::WaitFailed;
            outcome.error = errno;
        }
        ended = true;
    };
    while (!ended) {
        pollfd fds[5];
        nfds_t n = 0;
        fds[n++] = {pidfd, POLLIN, 0};
        fds[n++] = {captures[0].fd, POLLIN, 0};
        fds[n++] = {captures[1].fd, POLLIN, 0};
        fds[n++] = {feed.fd, POLLOUT, 0};
        fds[n++] = {killAt ? -1 : quitFd, POLLIN, 0};
        Clock::time_point next = Clock::time_point::max();
        if (limited && !killing) next = std::min(next, deadline);
        if (!toldSlow) next = std::min(next, slowAt);
        if (killAt && !killing) next = std::min(next, *killAt);
        int timeout = next == Clock::time_point::max() ? -1 : MillisecondsUntil(next);
        if (pidfd < 0) timeout = timeout < 0 ? kFallbackPollMs : std::min(timeout, kFallbackPollMs);
        int ready = ::poll(fds, n, timeout);
        if (ready < 0 && errno != EINTR) {
            Platform::LogSystemError("poll() failed");
            ::kill(-pid, SIGKILL);
            reap(false);
            outcome.end = CommandOutcome::End::WaitFailed;
            break;
        }
        if (ready > 0) {
            for (int i = 0; i < 2; ++i)
                if (fds[1 + i].revents) captures[i].Drain(kDrainWhileRunning);
            if (fds[3].revents) feed.Write();
        }
        const Clock::time_point now = Clock::now();
        bool childEnded = ready > 0 && fds[0].revents;
        if (pidfd < 0) {
            siginfo_t info{};
            childEnded =
                ::waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
                info.si_pid == pid;
        }
        if (childEnded) {
            reap(killAt.has_value() || killing);
            break;
        }
        if (ready > 0 && fds[4].revents && !killAt) {
            // The console is to end: the group is asked to go, then made to.
            Platform::Log(LOG_WARNING, "%s", "Killing process group because the console is ending");
            ::kill(-pid, SIGTERM);
            killAt = now + kTermGrace;
            outcome.end = CommandOutcome::End::Interrupted;
        } else if (limited && !killing && !killAt && now >= deadline) {
            Platform::Log(LOG_WARNING, "Killing process because %d seconds timeout expired",
                          timeLimit);
            ::kill(-pid, SIGKILL);
            killing = true;
            outcome.end = CommandOutcome::End::TimedOut;
        }
        if (killAt && !killing && now >= *killAt) {
            // A tool that ignores SIGTERM.
            ::kill(-pid, SIGKILL);
            killing = true;
        }
        if (!toldSlow && now >= slowAt) {
            toldSlow = true;
            Platform::NotifySlowWait(true);
        }
    }
    CloseFd(feed.fd);
    sigpipe.raised = feed.brokenPipe;
    CloseFd(pidfd);
    if (toldSlow) Platform::NotifySlowWait(false);

    // What the child wrote before it ended is in the pipes now; a grandchild
    // that still holds them open is not waited for.
    for (auto& c : captures) {
        c.Drain(kDrainAfterExit);
        CloseFd(c.fd);
    }
    if (output && outputLength) *outputLength = captures[0].failed ? -1 : captures[0].count;
    if (error && errorLength) *errorLength = captures[1].failed ? -1 : captures[1].count;

    const bool stopped = outcome.end == CommandOutcome::End::TimedOut ||
                         outcome.end == CommandOutcome::End::Interrupted ||
                         outcome.end == CommandOutcome::End::WaitFailed;
    if (!stopped) {
        if (WIFEXITED(status)) {
            outcome.end = CommandOutcome::End::Exited;
            outcome.status = WEXITSTATUS(status);
            return outcome;
        }
        outcome.end = CommandOutcome::End::Signalled;
        outcome.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }
    Platform::Log(LOG_ERR, "%s", "Run Command did not terminate normally");
    return outcome;
}

int RunCommand(const char* path, const char* const argv[], char* output, int* outputLength,
               char* error, int* errorLength, const char* input, int inputLength, int timeLimit) {
    return RunCommandDetailed(path, argv, output, outputLength, error, errorLength, input,
                              inputLength, timeLimit)
        .result();
}

int RunShellCommand(const char* line, int timeLimit) {
    const char* argv[] = {"sh", "-c", line, nullptr};
    return RunCommand("/bin/sh", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0, timeLimit);
}

int RunCommandLogged(const char* path, const char* const argv[], int timeLimit) {
    const std::string command = JoinArguments(argv);
    char out[kCaptureBufferSize] = {};
    char err[kCaptureBufferSize] = {};
    int outLength = kCaptureCapacity;
    int errLength = kCaptureCapacity;
    int rc = RunCommand(path, argv, out, &outLength, err, &errLength, nullptr, 0, timeLimit);
    out[ClampedCount(outLength)] = '\0';
    err[ClampedCount(errLength)] = '\0';
    if (rc != 0)
        Platform::Log(LOG_ERR, "Command \"%s\" failed (rc=%d): (stdout=%s, stderr=%s)",
                      command.c_str(), rc, out, err);
    else
        Platform::Log(LOG_INFO, "Command \"%s\" succeeded", command.c_str());
    return rc;
}

int RunKovacli(const char* const argv[], int timeLimit) {
    const std::string command = JoinArguments(argv);
    char out[kCaptureBufferSize] = {};
    int outLength = kCaptureCapacity;
    int rc =
        RunCommand("/bin/kovacli", argv, out, &outLength, nullptr, nullptr, nullptr, 0, timeLimit);
    out[ClampedCount(outLength)] = '\0';
    if (rc != 0)
        Platform::Log(LOG_ERR, "Command \"%s\" failed (rc=%d): %s", command.c_str(), rc, out);
    else
        Platform::Log(LOG_INFO, "Command \"%s\" succeeded", command.c_str());
    return rc;
}

bool AddStandardPortGroup(const std::string& portGroup, const std::string& vswitch, int timeLimit) {
    const char* argv[] = {"kovacli",   "network",       "vswitch", "standard",
                          "portgroup", "add",           "-p",      portGroup.c_str(),
                          "-v",        vswitch.c_str(), nullptr};
    return RunKovacli(argv, timeLimit) == 0;
}

std::string CollapseWhitespace(std::string_view text) {
    std::string result;
    bool pendingBlank = false;
    for (char c : text) {
        if (std::isspace(static_cast<unsigned char>(c))) {
            pendingBlank = !result.empty();
            continue;
        }
        if (pendingBlank) result += ' ';
        pendingBlank = false;
        result += c;
    }
    return result;
}

std::string JoinArguments(const char* const argv[]) {
    std::string joined;
    if (!argv || !argv[0]) return joined;
    joined = argv[0];
    for (size_t i = 1; argv[i]; ++i) {
        joined += ' ';
        joined += argv[i];
    }
    return joined;
}

}  // namespace Tesk
