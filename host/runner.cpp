#include "host/runner.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <climits>

#include "platform/hostroot.h"
#include "platform/syslog.h"

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

// Starts the child with its standard streams on the given pipe ends, a clean
// signal mask and default signal actions (the console blocks its signals for
// its signal thread; a tool must not inherit that).
pid_t Spawn(const std::string& path, const char* const argv[], int in, int out, int err) {
    static const char* const environment[] = {"PYTHONHOME=/", nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attr;
    if (::posix_spawn_file_actions_init(&actions) != 0) return -1;
    if (::posix_spawnattr_init(&attr) != 0) {
        ::posix_spawn_file_actions_destroy(&actions);
        return -1;
    }
    ::posix_spawn_file_actions_adddup2(&actions, in, STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, out, STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, err, STDERR_FILENO);
    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    sigdelset(&all, SIGKILL);
    sigdelset(&all, SIGSTOP);
    ::posix_spawnattr_setsigmask(&attr, &none);
    ::posix_spawnattr_setsigdefault(&attr, &all);
    ::posix_spawnattr_setflags(&attr, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    pid_t pid = -1;
    int rc = ::posix_spawn(&pid, path.c_str(), &actions, &attr, const_cast<char* const*>(argv),
                           const_cast<char* const*>(environment));
    ::posix_spawnattr_destroy(&attr);
    ::posix_spawn_file_actions_destroy(&actions);
    return rc == 0 ? pid : -1;
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

int RunCommand(const char* path, const char* const argv[], char* output, int* outputLength,
               char* error, int* errorLength, const char* input, int inputLength, int timeLimit) {
    int in[2] = {-1, -1}, out[2] = {-1, -1}, err[2] = {-1, -1};
    auto closeAll = [&] {
        for (int* p : {in, out, err}) {
            CloseFd(p[0]);
            CloseFd(p[1]);
        }
    };
    if (::pipe2(in, O_CLOEXEC) != 0 || ::pipe2(out, O_CLOEXEC) != 0 ||
        ::pipe2(err, O_CLOEXEC) != 0) {
        closeAll();
        return -1;
    }
    pid_t pid = Spawn(Platform::HostPath(path ? path : ""), argv, in[0], out[1], err[1]);
    if (pid < 0) {
        closeAll();
        return -1;
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
    // ends.
    int pidfd = static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
    const bool limited = timeLimit > 0;
    const Clock::time_point deadline = Clock::now() + std::chrono::seconds(limited ? timeLimit : 0);
    int status = -1;
    bool exitedNormally = false;
    for (bool ended = false; !ended;) {
        pollfd fds[4];
        nfds_t n = 0;
        fds[n++] = {pidfd, POLLIN, 0};
        fds[n++] = {captures[0].fd, POLLIN, 0};
        fds[n++] = {captures[1].fd, POLLIN, 0};
        fds[n++] = {feed.fd, POLLOUT, 0};
        int timeout = limited ? MillisecondsUntil(deadline) : -1;
        if (pidfd < 0) timeout = timeout < 0 ? kFallbackPollMs : std::min(timeout, kFallbackPollMs);
        int ready = ::poll(fds, n, timeout);
        if (ready < 0 && errno != EINTR) {
            Platform::LogSystemError("poll() failed");
            ::kill(pid, SIGKILL);
            while (::waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
            }
            break;
        }
        if (ready > 0) {
            for (int i = 0; i < 2; ++i)
                if (fds[1 + i].revents) captures[i].Drain(kDrainWhileRunning);
            if (fds[3].revents) feed.Write();
        }
        if (pidfd < 0 || (ready > 0 && fds[0].revents)) {
            int st = 0;
            pid_t w = ::waitpid(pid, &st, WNOHANG);
            if (w == pid) {
                status = st;
                exitedNormally = WIFEXITED(st);
                ended = true;
            } else if (w < 0 && errno != EINTR) {
                ended = true;  // the wait failed: the status stays unknown
            }
        }
        if (!ended && limited && Clock::now() >= deadline) {
            Platform::Log(LOG_WARNING, "Killing process because %d seconds timeout expired",
                          timeLimit);
            ::kill(pid, SIGKILL);
            while (::waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
            }
            ended = true;
        }
    }
    CloseFd(feed.fd);
    sigpipe.raised = feed.brokenPipe;
    CloseFd(pidfd);

    // What the child wrote before it ended is in the pipes now; a grandchild
    // that still holds them open is not waited for.
    for (auto& c : captures) {
        c.Drain(kDrainAfterExit);
        CloseFd(c.fd);
    }
    if (output && outputLength) *outputLength = captures[0].failed ? -1 : captures[0].count;
    if (error && errorLength) *errorLength = captures[1].failed ? -1 : captures[1].count;

    if (exitedNormally) return WEXITSTATUS(status);
    Platform::Log(LOG_ERR, "%s", "Run Command did not terminate normally");
    return -1;
}

int RunShellCommand(const char* line) {
    const char* argv[] = {"sh", "-c", line, nullptr};
    return RunCommand("/bin/sh", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0);
}

int RunCommandLogged(const char* path, const char* const argv[]) {
    const std::string command = JoinArguments(argv);
    char out[kCaptureBufferSize] = {};
    char err[kCaptureBufferSize] = {};
    int outLength = kCaptureCapacity;
    int errLength = kCaptureCapacity;
    int rc = RunCommand(path, argv, out, &outLength, err, &errLength, nullptr, 0, 0);
    out[ClampedCount(outLength)] = '\0';
    err[ClampedCount(errLength)] = '\0';
    if (rc != 0)
        Platform::Log(LOG_ERR, "Command \"%s\" failed (rc=%d): (stdout=%s, stderr=%s)",
                      command.c_str(), rc, out, err);
    else
        Platform::Log(LOG_INFO, "Command \"%s\" succeeded", command.c_str());
    return rc;
}

int RunKovacli(const char* const argv[]) {
    const std::string command = JoinArguments(argv);
    char out[kCaptureBufferSize] = {};
    int outLength = kCaptureCapacity;
    int rc = RunCommand("/bin/kovacli", argv, out, &outLength, nullptr, nullptr, nullptr, 0, 0);
    out[ClampedCount(outLength)] = '\0';
    if (rc != 0)
        Platform::Log(LOG_ERR, "Command \"%s\" failed (rc=%d): %s", command.c_str(), rc, out);
    else
        Platform::Log(LOG_INFO, "Command \"%s\" succeeded", command.c_str());
    return rc;
}

bool AddStandardVswitch(const std::string& vswitch) {
    const char* argv[] = {"kovacli", "network", "vswitch",       "standard",
                          "add",     "-v",      vswitch.c_str(), nullptr};
    return RunKovacli(argv) == 0;
}

bool AddVswitchUplink(const std::string& vswitch, const std::string& uplink) {
    const char* argv[] = {"kovacli", "network",      "vswitch", "standard",      "uplink", "add",
                          "-u",      uplink.c_str(), "-v",      vswitch.c_str(), nullptr};
    return RunKovacli(argv) == 0;
}

bool RemoveVswitchUplink(const std::string& vswitch, const std::string& uplink) {
    const char* argv[] = {"kovacli", "network",      "vswitch", "standard",      "uplink", "remove",
                          "-u",      uplink.c_str(), "-v",      vswitch.c_str(), nullptr};
    return RunKovacli(argv) == 0;
}

bool AddStandardPortGroup(const std::string& portGroup, const std::string& vswitch) {
    const char* argv[] = {"kovacli",   "network",       "vswitch", "standard",
                          "portgroup", "add",           "-p",      portGroup.c_str(),
                          "-v",        vswitch.c_str(), nullptr};
    return RunKovacli(argv) == 0;
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
