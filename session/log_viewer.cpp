#include "session/log_viewer.h"

#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "platform/hostroot.h"
#include "platform/syslog.h"
#include "ui/terminal.h"
#include "ui/window.h"

extern char** environ;

namespace Tesk {

namespace {

constexpr const char kPager[] = "/bin/less";
constexpr const char kPagerPrompt[] = "<Q> Quit </> RegExp Search <H> Help";

}  // namespace

const std::vector<LogFile>& LogTable() {
    static const std::vector<LogFile> logs = {
        {"Syslog", "/var/log/syslog.log"},
        {"Zerkel", "/var/log/zerkel.log"},
        {"Config", "/var/log/sysboot.log"},
        {"Management Agent (hagentd)", "/var/log/hagentd.log"},
        {"Centrix Agent (mgra)", "/var/log/mgra.log"},
        {"High Availibility Agent (hamon)", "/var/log/hamon.log"},
        {"Brelt Kovix Observation log (noxd)", "/var/log/noxd.log"}};
    return logs;
}

std::vector<LogFile> AvailableLogs() {
    std::vector<LogFile> available;
    for (const auto& log : LogTable()) {
        struct stat st {};
        if (::stat(Platform::HostPath(log.path).c_str(), &st) == 0) available.push_back(log);
    }
    return available;
}

void ViewLog(Window& w, const std::string& logHostPath) {
    SetCurrentWindow(nullptr);
    ViewWithPager(kPager, logHostPath);
    keypad(stdscr, TRUE);
    w.setActive(true);
    SetCurrentWindow(&w);
    clearok(curscr, TRUE);
}

int ViewWithPager(const std::string& pagerHostPath, const std::string& logHostPath) {
    termios current{};
    const bool haveCurrent = ::tcgetattr(1, &current) == 0;
    ::tcsetattr(1, TCSANOW, &StartupTerminalSettings());
    clear();
    refresh();

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
    posix_spawnattr_t attr;
    posix_spawnattr_init(&attr);
    sigset_t none, defaults;
    sigemptyset(&none);
    sigemptyset(&defaults);
    for (int s : {SIGINT, SIGQUIT, SIGTERM, SIGUSR1, SIGUSR2, SIGWINCH, SIGTTOU, SIGTTIN, SIGTSTP})
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
    int rc = ::posix_spawn(&child, pager.c_str(), &actions, &attr, argv, environ);
    // Without a terminal on standard input there is no foreground to hand over.
    if (rc == ENOTTY) rc = ::posix_spawn(&child, pager.c_str(), nullptr, &attr, argv, environ);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attr);

    // Taking the terminal back from the background would stop this process.
    sigset_t ttou, previous;
    sigemptyset(&ttou);
    sigaddset(&ttou, SIGTTOU);
    ::pthread_sigmask(SIG_BLOCK, &ttou, &previous);
    int status = -1;
    if (rc == 0) {
        // A pager stopped by job control (Ctrl-Z) would leave the console
        // waiting for ever with nobody to resume it: it is resumed at once.
        for (;;) {
            int wstatus = 0;
            pid_t r = ::waitpid(child, &wstatus, WUNTRACED);
            if (r < 0 && errno == EINTR) continue;
            if (r == child && WIFSTOPPED(wstatus)) {
                ::kill(-child, SIGCONT);
                continue;
            }
            if (r == child) status = WIFEXITED(wstatus) ? WEXITSTATUS(wstatus) : -1;
            break;
        }
    } else {
        errno = rc;
        Platform::LogSystemError("Running the pager failed");
    }

    ::setenv("LESSSECURE", remembered.c_str(), 1);
    if (haveCurrent) ::tcsetattr(1, TCSANOW, &current);
    ::tcsetpgrp(0, ::getpgrp());
    ::pthread_sigmask(SIG_SETMASK, &previous, nullptr);
    return status;
}

}  // namespace Tesk
