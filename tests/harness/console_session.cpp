#include "tests/harness/console_session.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
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
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <gtest/gtest.h>

#include "sim/pam_wrapper_start.h"

namespace TeskTest {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

// Longest a wait polls before it looks at its condition again.
constexpr int kPollSliceMs = 20;

int RemainingMs(Clock::time_point deadline) {
    auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return left <= 0 ? 0 : static_cast<int>(std::min<long long>(left, 1 << 30));
}

// Bytes as C string literal text, for failure messages.
std::string Escaped(std::string_view bytes) {
    std::string out;
    for (unsigned char c : bytes) {
        char hex[8];
        std::snprintf(hex, sizeof hex, "\\x%02x", c);
        out += c == 0x1b ? "\\e" : c < 0x20 || c == 0x7f || c == '\\' ? hex : std::string(1, c);
    }
    return out;
}

[[noreturn]] void ThrowErrno(const std::string& what) {
    throw std::runtime_error(what + ": " + std::strerror(errno));
}

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
    : ConsoleSession(&root, std::move(options), where) {}

ConsoleSession::ConsoleSession(SessionOptions options, std::source_location where)
    : ConsoleSession(nullptr, std::move(options), where) {}

ConsoleSession::ConsoleSession(const SimRoot* root, SessionOptions options,
                               std::source_location where)
    : options_(std::move(options)),
      started_(where),
      root_(root),
      screen_(options_.cols, options_.rows) {
    try {
        launch();
    } catch (...) {
        // The destructor does not run for a session that never started.
        if (master_ >= 0) ::close(master_);
        throw;
    }
}

void ConsoleSession::launch() {
    const SessionOptions& options = options_;
    const std::string program = options.program.empty() ? TeskBinary() : options.program;

    // The environment is made from nothing, so that the developer's own
    // settings never reach the program.
    std::map<std::string, std::string> env = {
        {"PATH", "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin"},
        {"TERM", options.term},
    };
    if (options.sshClient) env["SSH_CLIENT"] = *options.sshClient;
    if (root_) {
        env["TESK_ROOT"] = root_->path();
        sanitizerPrefix_ = root_->path("/tmp/sanitizer");
        if (options.pamWrapper) {
            // As the simulated host starts the console: PAM through pam_wrapper
            // with the root's own service file and user database.
            env["LD_PRELOAD"] = "libpam_wrapper.so";
            env["PAM_WRAPPER"] = "1";
            env["PAM_WRAPPER_SERVICE_DIR"] = root_->path("/etc/simhost/pam.d");
            env["PAM_WRAPPER_DISABLE_DEEPBIND"] = "1";
            env["UID_WRAPPER_DISABLE_DEEPBIND"] = "1";
        }
    }
    // A sanitizer build with pam_wrapper preloaded would refuse to start
    // without verify_asan_link_order=0. The console sends its stderr to
    // /dev/null, so reports go to files in the root, where the session finds them.
    auto sanitizer = [&](const char* name, const std::string& defaults) {
        const char* own = std::getenv(name);
        env[name] =
            own ? own
                : defaults + (sanitizerPrefix_.empty() ? "" : ":log_path=" + sanitizerPrefix_);
    };
    sanitizer("ASAN_OPTIONS", "verify_asan_link_order=0");
    sanitizer("UBSAN_OPTIONS", "print_stacktrace=1");
    if (const char* lsan = std::getenv("LSAN_OPTIONS")) env["LSAN_OPTIONS"] = lsan;
    for (const auto& [name, value] : options.env) env[name] = value;

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

    // A program that preloads pam_wrapper starts alone (sim/pam_wrapper_start.h).
    const auto preload = env.find("LD_PRELOAD");
    std::optional<Sim::PamWrapperStart> pamStart;
    if (preload != env.end() && preload->second.find("pam_wrapper") != std::string::npos)
        pamStart.emplace();

    if (::access(program.c_str(), X_OK) != 0 || (pid_ = ::fork()) < 0) {
        int e = errno;
        ::close(slave);
        throw std::runtime_error("cannot start " + program + ": " + std::strerror(e));
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
        ::_exit(127);
    }
    ::close(slave);
    ::fcntl(master_, F_SETFL, ::fcntl(master_, F_GETFL) | O_NONBLOCK);
    if (pamStart)
        pamStart->started(
            pid_,
            [this] {
                reap(false);
                return exit_.kind != ExitStatus::Kind::Running;
            },
            DefaultTimeout());
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
    // While the program is not reading, the wait keeps taking its output, so
    // that it cannot block on writing while we block on it.
    int error = 0;
    wait(
        [&] {
            ssize_t n = ::write(master_, text.data(), text.size());
            if (n > 0) text.remove_prefix(static_cast<size_t>(n));
            if (n < 0 && errno != EAGAIN && errno != EINTR) error = errno;
            return text.empty() || error != 0;
        },
        "the program to take input", DefaultTimeout(), where, false);
    if (error) fail(where, std::string("cannot type into the terminal: ") + std::strerror(error));
    pump(0);
}

void ConsoleSession::keys(std::initializer_list<std::string_view> keys,
                          std::source_location where) {
    for (auto k : keys) type(k, where);
}

bool ConsoleSession::wait(const std::function<bool()>& condition, const std::string& what,
                          Timeout timeout, std::source_location where, bool endsAtExit) {
    auto deadline = Clock::now() + timeout;
    for (;;) {
        drain();
        if (condition()) return true;
        if (eof_ && endsAtExit) {
            // No more output can come.
            reap(true);
            fail(where, "the program " + (std::ostringstream() << exit_).str() +
                            " without showing " + what);
            return false;
        }
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
    fail(where, "timed out after " + std::to_string(timeout.count()) + " ms waiting for " + what);
    return false;
}

bool ConsoleSession::waitFor(const std::function<bool()>& condition, std::string_view what,
                             Timeout timeout, std::source_location where) {
    return wait(condition, std::string(what), timeout, where, false);
}

bool ConsoleSession::waitForText(std::string_view text, Timeout timeout,
                                 std::source_location where) {
    return wait([&] { return screen_.contains(text); }, "\"" + std::string(text) + "\"", timeout,
                where, true);
}

bool ConsoleSession::waitForTextGone(std::string_view text, Timeout timeout,
                                     std::source_location where) {
    return wait([&] { return !screen_.contains(text); },
                "\"" + std::string(text) + "\" to leave the screen", timeout, where, false);
}

bool ConsoleSession::waitForQuiet(Timeout quiet, Timeout timeout, std::source_location where) {
    auto deadline = Clock::now() + timeout;
    for (;;) {
        drain();
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
    drain();
    return screen_;
}

const std::string& ConsoleSession::output() {
    drain();
    return output_;
}

std::string ConsoleSession::dump() {
    drain();
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
    drain();
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
    auto ended = [&] {
        reap(false);
        return exit_.kind != ExitStatus::Kind::Running;
    };
    if (wait(ended, "the program to end", timeout, where, false))
        drain();  // what it wrote last is still queued in the terminal
    return exit_;
}

ExitStatus ConsoleSession::status() {
    drain();
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
