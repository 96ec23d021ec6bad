#include "tests/harness/console_session.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

namespace TeskTest {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

// Longest a wait polls before it looks at its condition again.
constexpr int kPollSliceMs = 20;

constexpr const char kSanitizerLogName[] = "sanitizer";

int RemainingMs(Clock::time_point deadline) {
    auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return left <= 0 ? 0 : static_cast<int>(std::min<long long>(left, 1 << 30));
}

// Bytes as C string literal text, for failure messages.
std::string Escaped(std::string_view bytes) {
    std::string out;
    for (unsigned char c : bytes) {
        if (c == '\\') {
            out += "\\\\";
        } else if (c == '\n') {
            out += "\\n";
        } else if (c == '\r') {
            out += "\\r";
        } else if (c == 0x1b) {
            out += "\\e";
        } else if (c < 0x20 || c == 0x7f) {
            char hex[8];
            std::snprintf(hex, sizeof hex, "\\x%02x", c);
            out += hex;
        } else {
            out += static_cast<char>(c);
        }
    }
    return out;
}

void SetEnv(std::vector<std::pair<std::string, std::string>>& env, const std::string& name,
            const std::string& value) {
    for (auto& [n, v] : env) {
        if (n == name) {
            v = value;
            return;
        }
    }
    env.emplace_back(name, value);
}

[[noreturn]] void ThrowErrno(const std::string& what) {
    throw std::runtime_error(what + ": " + std::strerror(errno));
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const ExitStatus& status) {
    switch (status.kind) {
        case ExitStatus::Kind::Running:
            return out << "still running";
        case ExitStatus::Kind::Exited:
            return out << "exited with status " << status.value;
        case ExitStatus::Kind::Signalled:
            return out << "killed by signal " << status.value << " (" << ::strsignal(status.value)
                       << ")";
    }
    return out;
}

ConsoleSession::ConsoleSession(const SimRoot& root, SessionOptions options,
                               std::source_location where)
    : options_(std::move(options)),
      started_(where),
      root_(&root),
      screen_(options_.cols, options_.rows) {
    start(root_);
}

ConsoleSession::ConsoleSession(SessionOptions options, std::source_location where)
    : options_(std::move(options)), started_(where), screen_(options_.cols, options_.rows) {
    start(nullptr);
}

void ConsoleSession::start(const SimRoot* root) {
    try {
        launch(root);
    } catch (...) {
        // The destructor does not run for a session that never started.
        if (master_ >= 0) ::close(master_);
        master_ = -1;
        throw;
    }
}

namespace {

// Types Ctrl-S into a terminal nobody has yet read from and waits until its
// line discipline has stopped the output: the slave takes no more bytes.
bool StopOutput(int master, int slave) {
    if (::write(master, "\x13", 1) != 1) return false;
    const auto deadline = Clock::now() + DefaultTimeout();
    while (Clock::now() < deadline) {
        pollfd out{slave, POLLOUT, 0};
        if (::poll(&out, 1, 0) == 0) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

}  // namespace

void ConsoleSession::launch(const SimRoot* root) {
    const SessionOptions& options = options_;
    const std::string program = options.program.empty() ? TeskBinary() : options.program;

    // The environment is made from nothing, so that the developer's own
    // settings never reach the program.
    std::vector<std::pair<std::string, std::string>> env = {
        {"PATH", "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin"},
        {"TERM", options.term},
    };
    if (options.sshClient) SetEnv(env, "SSH_CLIENT", *options.sshClient);
    if (root) {
        SetEnv(env, "TESK_ROOT", root->path());
        sanitizerPrefix_ = root->path(std::string("/tmp/") + kSanitizerLogName);
        if (options.pamWrapper) {
            // As the simulated host starts the console: PAM through pam_wrapper
            // with the root's own service file and user database.
            SetEnv(env, "LD_PRELOAD", "libpam_wrapper.so");
            SetEnv(env, "PAM_WRAPPER", "1");
            SetEnv(env, "PAM_WRAPPER_SERVICE_DIR", root->path("/etc/simhost/pam.d"));
            SetEnv(env, "PAM_WRAPPER_DISABLE_DEEPBIND", "1");
            SetEnv(env, "UID_WRAPPER_DISABLE_DEEPBIND", "1");
        }
    }
    // A sanitizer build with pam_wrapper preloaded would refuse to start
    // without verify_asan_link_order=0. The console sends its stderr to
    // /dev/null, so reports go to files in the root, where the session finds them.
    auto sanitizer = [&](const char* name, const std::string& defaults) {
        if (const char* own = std::getenv(name)) {
            SetEnv(env, name, own);
        } else {
            std::string value = defaults;
            if (!sanitizerPrefix_.empty()) value += ":log_path=" + sanitizerPrefix_;
            SetEnv(env, name, value);
        }
    };
    sanitizer("ASAN_OPTIONS", "verify_asan_link_order=0");
    sanitizer("UBSAN_OPTIONS", "print_stacktrace=1");
    if (const char* lsan = std::getenv("LSAN_OPTIONS")) SetEnv(env, "LSAN_OPTIONS", lsan);
    for (const auto& [name, value] : options.env) SetEnv(env, name, value);

    // Everything the child needs is made before fork: after it, the child
    // only calls functions that are safe there.
    std::vector<std::string> envStrings;
    for (const auto& [name, value] : env) envStrings.push_back(name + "=" + value);
    std::vector<char*> envp;
    for (auto& s : envStrings) envp.push_back(s.data());
    envp.push_back(nullptr);
    std::vector<std::string> argStrings{program};
    argStrings.insert(argStrings.end(), options.args.begin(), options.args.end());
    std::vector<char*> argv;
    for (auto& s : argStrings) argv.push_back(s.data());
    argv.push_back(nullptr);

    master_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (master_ < 0) ThrowErrno("posix_openpt");
    if (::grantpt(master_) != 0 || ::unlockpt(master_) != 0) ThrowErrno("grantpt/unlockpt");
    char slaveName[128];
    if (::ptsname_r(master_, slaveName, sizeof slaveName) != 0) ThrowErrno("ptsname_r");
    winsize ws{};
    ws.ws_col = static_cast<unsigned short>(options.cols);
    ws.ws_row = static_cast<unsigned short>(options.rows);
    if (::ioctl(master_, TIOCSWINSZ, &ws) != 0) ThrowErrno("TIOCSWINSZ");
    // Opened here, not in the child: with the slave open from the start, the
    // master never reports a hang-up before the program is running.
    int slave = ::open(slaveName, O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (slave < 0) ThrowErrno(std::string("open ") + slaveName);
    if (options.outputStopped && !StopOutput(master_, slave)) {
        ::close(slave);
        throw std::runtime_error("the terminal's output did not stop on Ctrl-S");
    }

    int execPipe[2];
    if (::pipe2(execPipe, O_CLOEXEC) != 0) {
        ::close(slave);
        ThrowErrno("pipe2");
    }

    pid_ = ::fork();
    if (pid_ < 0) {
        int e = errno;
        ::close(slave);
        ::close(execPipe[0]);
        ::close(execPipe[1]);
        errno = e;
        ThrowErrno("fork");
    }
    if (pid_ == 0) {
        // The program gets ordinary signal handling whatever the test runner
        // blocked or ignored.
        sigset_t none;
        sigemptyset(&none);
        ::sigprocmask(SIG_SETMASK, &none, nullptr);
        struct sigaction dfl {};
        dfl.sa_handler = SIG_DFL;
        for (int s = 1; s < NSIG; ++s) ::sigaction(s, &dfl, nullptr);
        ::setsid();
        ::ioctl(slave, TIOCSCTTY, 0);
        ::dup2(slave, 0);
        ::dup2(slave, 1);
        ::dup2(slave, 2);
        if (slave > 2) ::close(slave);
        ::execve(argv[0], argv.data(), envp.data());
        int e = errno;
        ssize_t ignored = ::write(execPipe[1], &e, sizeof e);
        (void)ignored;
        ::_exit(127);
    }
    ::close(slave);
    ::close(execPipe[1]);
    int execErrno = 0;
    ssize_t n;
    while ((n = ::read(execPipe[0], &execErrno, sizeof execErrno)) < 0 && errno == EINTR) {
    }
    ::close(execPipe[0]);
    if (n == sizeof execErrno) {
        reap(true);
        ::close(master_);
        master_ = -1;
        throw std::runtime_error("cannot start " + program + ": " + std::strerror(execErrno));
    }

    int flags = ::fcntl(master_, F_GETFL);
    ::fcntl(master_, F_SETFL, flags | O_NONBLOCK);
#ifdef SYS_pidfd_open
    pidfd_ = static_cast<int>(::syscall(SYS_pidfd_open, pid_, 0));
#endif
    if (options.answerQueries) {
        screen_.setAnswerSink([this](std::string_view answer) {
            // Short answers into an almost empty input queue; a lost answer
            // only makes the program wait for it.
            ssize_t ignored = ::write(master_, answer.data(), answer.size());
            (void)ignored;
        });
    }
    lastOutput_ = Clock::now();
}

ConsoleSession::~ConsoleSession() {
    if (pid_ > 0 && exit_.kind == ExitStatus::Kind::Running) {
        reap(false);
        if (exit_.kind == ExitStatus::Kind::Running) {
            // The program leads its own process group: end it with whatever
            // it started.
            ::kill(-pid_, SIGKILL);
            ::kill(pid_, SIGKILL);
            reap(true);
        }
    }
    if (master_ >= 0) ::close(master_);
    if (pidfd_ >= 0) ::close(pidfd_);
    if (options_.failOnSanitizerReport) {
        std::string reports = sanitizerReports();
        if (!reports.empty())
            ADD_FAILURE_AT(started_.file_name(), static_cast<int>(started_.line()))
                << "the program started here left sanitizer reports:\n"
                << reports;
    }
}

bool ConsoleSession::pump(int waitMs) {
    if (eof_ || master_ < 0) return false;
    pollfd p{master_, POLLIN, 0};
    int ready;
    while ((ready = ::poll(&p, 1, waitMs)) < 0 && errno == EINTR) {
    }
    if (ready <= 0) return false;
    bool got = false;
    char buf[65536];
    for (;;) {
        ssize_t n = ::read(master_, buf, sizeof buf);
        if (n > 0) {
            output_.append(buf, static_cast<size_t>(n));
            screen_.feed(std::string_view(buf, static_cast<size_t>(n)));
            lastOutput_ = Clock::now();
            got = true;
            continue;
        }
        if (n < 0 && errno == EINTR) continue;
        if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) break;
        // EIO: every holder of the terminal's other end has closed it (the
        // program has ended); nothing more can come.
        eof_ = true;
        break;
    }
    return got;
}

void ConsoleSession::reap(bool block) {
    if (pid_ <= 0 || exit_.kind != ExitStatus::Kind::Running) return;
    int st = 0;
    pid_t r;
    while ((r = ::waitpid(pid_, &st, block ? 0 : WNOHANG)) < 0 && errno == EINTR) {
    }
    if (r != pid_) return;
    if (WIFEXITED(st))
        exit_ = ExitStatus::Exited(WEXITSTATUS(st));
    else if (WIFSIGNALED(st))
        exit_ = ExitStatus::Signalled(WTERMSIG(st));
}

void ConsoleSession::fail(std::source_location where, const std::string& message) {
    ADD_FAILURE_AT(where.file_name(), static_cast<int>(where.line())) << message << "\n" << dump();
}

void ConsoleSession::type(std::string_view text, std::source_location where) {
    reap(false);
    if (exit_.kind != ExitStatus::Kind::Running) {
        fail(where, "cannot type: the program " + (std::ostringstream() << exit_).str());
        return;
    }
    auto deadline = Clock::now() + DefaultTimeout();
    while (!text.empty()) {
        ssize_t n = ::write(master_, text.data(), text.size());
        if (n > 0) {
            text.remove_prefix(static_cast<size_t>(n));
            continue;
        }
        if (n < 0 && errno == EINTR) continue;
        if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            // The program is not reading; keep taking its output so that it
            // cannot block on writing while we block on it.
            if (RemainingMs(deadline) == 0) {
                fail(where, "the program took no input for " +
                                std::to_string(DefaultTimeout().count()) + " ms");
                return;
            }
            pollfd p[1] = {{master_, POLLOUT, 0}};
            ::poll(p, 1, kPollSliceMs);
            pump(0);
            continue;
        }
        fail(where, std::string("cannot type into the terminal: ") + std::strerror(errno));
        return;
    }
    pump(0);
}

void ConsoleSession::keys(std::initializer_list<std::string_view> keys,
                          std::source_location where) {
    for (auto k : keys) type(k, where);
}

bool ConsoleSession::waitFor(const std::function<bool()>& condition, std::string_view what,
                             Timeout timeout, std::source_location where) {
    auto deadline = Clock::now() + timeout;
    for (;;) {
        while (pump(0)) {
        }
        if (condition()) return true;
        int left = RemainingMs(deadline);
        if (left == 0) break;
        int slice = std::min(left, kPollSliceMs);
        if (eof_) {
            ::poll(nullptr, 0, slice);
        } else {
            pump(slice);
        }
    }
    reap(false);
    fail(where, "timed out after " + std::to_string(timeout.count()) + " ms waiting for " +
                    std::string(what));
    return false;
}

bool ConsoleSession::waitForText(std::string_view text, Timeout timeout,
                                 std::source_location where) {
    auto deadline = Clock::now() + timeout;
    for (;;) {
        while (pump(0)) {
        }
        if (screen_.contains(text)) return true;
        if (eof_) {
            // No more output can come.
            reap(true);
            fail(where, "the program " + (std::ostringstream() << exit_).str() +
                            " without showing \"" + std::string(text) + "\"");
            return false;
        }
        int left = RemainingMs(deadline);
        if (left == 0) break;
        pump(left);
    }
    reap(false);
    fail(where, "timed out after " + std::to_string(timeout.count()) + " ms waiting for \"" +
                    std::string(text) + "\" on the screen");
    return false;
}

bool ConsoleSession::waitForTextGone(std::string_view text, Timeout timeout,
                                     std::source_location where) {
    return waitFor([&] { return !screen_.contains(text); },
                   "\"" + std::string(text) + "\" to leave the screen", timeout, where);
}

bool ConsoleSession::waitForQuiet(Timeout quiet, Timeout timeout, std::source_location where) {
    auto deadline = Clock::now() + timeout;
    for (;;) {
        while (pump(0)) {
        }
        auto settled = lastOutput_ + quiet;
        auto now = Clock::now();
        if (now >= settled || eof_) return true;
        if (now >= deadline) break;
        pump(std::min(RemainingMs(settled) + 1, RemainingMs(deadline)));
    }
    fail(where, "the program kept writing for " + std::to_string(timeout.count()) + " ms");
    return false;
}

const Screen& ConsoleSession::screen() {
    while (pump(0)) {
    }
    return screen_;
}

const std::string& ConsoleSession::output() {
    while (pump(0)) {
    }
    return output_;
}

std::string ConsoleSession::dump() {
    while (pump(0)) {
    }
    reap(false);
    std::ostringstream out;
    out << "program " << (options_.program.empty() ? TeskBinary() : options_.program) << " (pid "
        << pid_ << ") " << exit_ << ", TERM=" << options_.term << "\n"
        << screen_.dump();
    size_t tail = std::min<size_t>(output_.size(), 400);
    out << "last " << tail << " of " << output_.size() << " bytes written: \""
        << Escaped(std::string_view(output_).substr(output_.size() - tail)) << "\"\n";
    if (root_) out << "last lines of the syslog mirror:\n" << root_->logTail();
    return out.str();
}

void ConsoleSession::resize(int cols, int rows) {
    while (pump(0)) {
    }
    screen_.resize(cols, rows);
    winsize ws{};
    ws.ws_col = static_cast<unsigned short>(cols);
    ws.ws_row = static_cast<unsigned short>(rows);
    if (::ioctl(master_, TIOCSWINSZ, &ws) != 0)
        ADD_FAILURE() << "TIOCSWINSZ " << cols << "x" << rows << ": " << std::strerror(errno);
}

void ConsoleSession::signal(int sig) {
    reap(false);
    if (exit_.kind != ExitStatus::Kind::Running) {
        ADD_FAILURE() << "cannot send signal " << sig << ": the program " << exit_;
        return;
    }
    ::kill(pid_, sig);
}

ExitStatus ConsoleSession::waitExit(Timeout timeout, std::source_location where) {
    auto deadline = Clock::now() + timeout;
    for (;;) {
        while (pump(0)) {
        }
        reap(false);
        if (exit_.kind != ExitStatus::Kind::Running) {
            // What it wrote last is still queued in the terminal.
            while (pump(0)) {
            }
            return exit_;
        }
        int left = RemainingMs(deadline);
        if (left == 0) break;
        pollfd p[2];
        nfds_t count = 0;
        if (pidfd_ >= 0) p[count++] = {pidfd_, POLLIN, 0};
        if (!eof_) p[count++] = {master_, POLLIN, 0};
        // Without a process descriptor the end is noticed by looking again.
        int slice = pidfd_ >= 0 ? left : std::min(left, kPollSliceMs);
        ::poll(p, count, slice);
    }
    fail(where, "the program did not end within " + std::to_string(timeout.count()) + " ms");
    return exit_;
}

ExitStatus ConsoleSession::status() {
    while (pump(0)) {
    }
    reap(false);
    return exit_;
}

std::string ConsoleSession::sanitizerReports() const {
    if (sanitizerPrefix_.empty()) return {};
    fs::path prefix(sanitizerPrefix_);
    std::error_code ec;
    std::string reports;
    for (const auto& entry : fs::directory_iterator(prefix.parent_path(), ec)) {
        std::string name = entry.path().filename().string();
        if (!name.starts_with(prefix.filename().string() + ".")) continue;
        std::ifstream in(entry.path());
        std::stringstream text;
        text << in.rdbuf();
        reports += "== " + entry.path().string() + "\n" + text.str();
    }
    return reports;
}

}  // namespace TeskTest
