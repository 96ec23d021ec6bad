#include "session/log_viewer.h"

#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>

#include "platform/hostroot.h"
#include "platform/syslog.h"
#include "platform/waiting.h"
#include "ui/terminal.h"
#include "ui/window.h"

extern char** environ;

namespace Tesk {

namespace {

constexpr const char kPager[] = "/bin/less";
constexpr const char kPagerPrompt[] = "<Q> Quit </> RegExp Search <H> Help";
// How often a running pager is looked at for a stop (Ctrl-Z).
constexpr int kStopCheckMs = 100;

}  // namespace

void ViewLog(Window& w, const std::string& logHostPath) {
    SetCurrentWindow(nullptr);
    ViewWithPager(kPager, logHostPath);
    keypad(stdscr, TRUE);
    w.setActive(true);
    SetCurrentWindow(&w);
    clearok(curscr, TRUE);
}

namespace {

// The pager's whole environment: the terminal, the locale and LESSSECURE (no
// shell escapes, no log files, no input preprocessor). Nothing else of the
// console's (the host root, preloaded libraries, sanitizer options, ...).
std::vector<std::string> PagerEnvironment() {
    std::vector<std::string> env;
    bool localeSet = false;
    for (char** e = environ; e && *e; ++e) {
        const std::string_view entry(*e);
        const std::string_view name = entry.substr(0, entry.find('='));
        if (name == "TERM" || name == "TERMINFO" || name == "LANG" || name == "LANGUAGE" ||
            name.starts_with("LC_")) {
            env.emplace_back(entry);
            localeSet = localeSet || name == "LANG" || name == "LC_ALL" || name == "LC_CTYPE";
        }
    }
    // The console's own character set when the environment names none.
    const char* ctype = std::setlocale(LC_CTYPE, nullptr);
    if (!localeSet && ctype && std::strcmp(ctype, "C") != 0 && std::strcmp(ctype, "POSIX") != 0)
        env.push_back(std::string("LC_CTYPE=") + ctype);
    env.emplace_back("LESSSECURE=1");
    return env;
}

std::optional<winsize> TerminalSize() {
    winsize size{};
    if (::ioctl(0, TIOCGWINSZ, &size) == 0 || ::ioctl(1, TIOCGWINSZ, &size) == 0) return size;
    return std::nullopt;
}

// Waits for the pager to end, leaving it unreaped. A pager stopped by job
// control (Ctrl-Z) would leave the console waiting for ever with nobody to
// resume it: it is resumed at once. When the console is asked to quit, the
// pager's group gets SIGTERM, and SIGKILL a second later.
void WaitForPager(pid_t child) {
    const int pidfd = static_cast<int>(::syscall(SYS_pidfd_open, child, 0));
    const int quitFd = Platform::QuitDescriptor();
    std::optional<std::chrono::steady_clock::time_point> killAt;
    bool killed = false;
    for (;;) {
        siginfo_t info{};
        if (::waitid(P_PID, static_cast<id_t>(child), &info, WSTOPPED | WNOHANG) == 0 &&
            info.si_pid == child) {
            ::kill(-child, SIGCONT);
            continue;
        }
        info = {};
        if (::waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT) != 0 ||
            info.si_pid == child)
            break;
        const auto now = std::chrono::steady_clock::now();
        if (killAt && !killed && now >= *killAt) {
            ::kill(-child, SIGKILL);  // a pager that ignores SIGTERM
            killed = true;
        }
        // The process descriptor shows the end at once; stops are looked
        // for every tenth of a second.
        pollfd fds[2] = {{pidfd, POLLIN, 0}, {killAt ? -1 : quitFd, POLLIN, 0}};
        if (::poll(fds, 2, kStopCheckMs) > 0 && fds[1].revents && !killAt) {
            Platform::Log(LOG_WARNING, "%s", "Ending the pager because the console is ending");
            ::kill(-child, SIGTERM);
            killAt = now + std::chrono::seconds(1);
        }
    }
    if (pidfd >= 0) ::close(pidfd);
}

}  // namespace

int ViewWithPager(const std::string& pagerHostPath, const std::string& logHostPath) {
    termios current{};
    const bool haveCurrent = ::tcgetattr(1, &current) == 0;
    ::tcsetattr(1, TCSANOW, &StartupTerminalSettings());
    clear();
    refresh();
    const std::optional<winsize> sizeBefore = TerminalSize();

    // The console's own LESSSECURE is "1" while the pager runs and afterwards
    // what it was (an unset one comes back empty), as it always was; the
    // pager gets it from its own environment below.
    const char* old = std::getenv("LESSSECURE");
    const std::string remembered = old ? old : "";
    ::setenv("LESSSECURE", "1", 1);

    // The pager runs in its own process group in the foreground, with the
    // signals this process keeps blocked for its signal thread unblocked, so
    // that Ctrl-C and friends reach the pager and not the console.
    const std::string pager = Platform::HostPath(pagerHostPath);
    const std::string log = Platform::HostPath(logHostPath);
    char* argv[] = {const_cast<char*>("less"), const_cast<char*>("-cfP"),
                    const_cast<char*>(kPagerPrompt), const_cast<char*>(log.c_str()), nullptr};
    std::vector<std::string> environment = PagerEnvironment();
    std::vector<char*> envp;
    for (auto& entry : environment) envp.push_back(entry.data());
    envp.push_back(nullptr);
    posix_spawnattr_t attr;
    posix_spawnattr_init(&attr);
    sigset_t none, defaults;
    sigemptyset(&none);
    sigemptyset(&defaults);
    for (int s : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGUSR1, SIGUSR2, SIGWINCH, SIGTTOU, SIGTTIN,
                  SIGTSTP, SIGPIPE})
        sigaddset(&defaults, s);
    posix_spawnattr_setsigmask(&attr, &none);
    posix_spawnattr_setsigdefault(&attr, &defaults);
    posix_spawnattr_setpgroup(&attr, 0);
    posix_spawnattr_setflags(
        &attr, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
    // The child makes its new group the terminal's foreground group before
    // the pager starts, so the pager never touches the terminal from the
    // background (which would stop it).
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addtcsetpgrp_np(&actions, 0);
    pid_t child = -1;
    int rc = ::posix_spawn(&child, pager.c_str(), &actions, &attr, argv, envp.data());
    // Without a terminal on standard input there is no foreground to hand over.
    if (rc == ENOTTY) rc = ::posix_spawn(&child, pager.c_str(), nullptr, &attr, argv, envp.data());
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attr);

    // Taking the terminal back from the background would stop this process.
    sigset_t ttou, previous;
    sigemptyset(&ttou);
    sigaddset(&ttou, SIGTTOU);
    ::pthread_sigmask(SIG_BLOCK, &ttou, &previous);
    int status = -1;
    if (rc == 0) {
        WaitForPager(child);
        // The pager has ended but is not reaped yet, so its group's id is
        // still its own: whatever it left running in the group goes with it.
        ::kill(-child, SIGKILL);
        int wstatus = 0;
        pid_t r;
        while ((r = ::waitpid(child, &wstatus, 0)) < 0 && errno == EINTR) {
        }
        if (r == child && WIFEXITED(wstatus)) status = WEXITSTATUS(wstatus);
    } else {
        errno = rc;
        Platform::LogSystemError("Running the pager failed");
    }

    ::setenv("LESSSECURE", remembered.c_str(), 1);
    if (haveCurrent) ::tcsetattr(1, TCSANOW, &current);
    ::tcsetpgrp(0, ::getpgrp());
    ::pthread_sigmask(SIG_SETMASK, &previous, nullptr);

    // While the pager had the terminal, a resize signalled only the pager's
    // group. Told now, the console acts on it as on any resize.
    const std::optional<winsize> sizeAfter = TerminalSize();
    if (sizeBefore && sizeAfter &&
        (sizeBefore->ws_row != sizeAfter->ws_row || sizeBefore->ws_col != sizeAfter->ws_col))
        ::kill(::getpid(), SIGWINCH);
    return status;
}

}  // namespace Tesk
