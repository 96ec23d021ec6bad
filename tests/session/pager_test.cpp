// Handing the terminal to the log pager and taking it back: what the pager is
// given, that it owns the terminal while it runs, and that the console's
// environment and terminal are as before afterwards; and the pager's fence: the
// environment it gets and its process group ended at its end (a quit and a
// resize while it runs: pager_signals_test.cpp).
#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "session/log_viewer.h"
#include "tests/support/process_end.h"

namespace fs = std::filesystem;

namespace {

std::string ReadAll(const fs::path& file) {
    std::ifstream in(file);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// A host root holding only the pager, a script that appends what it saw to
// <root>/record and then runs the given shell lines.
class PagerRoot {
public:
    explicit PagerRoot(const std::string& tail) {
        char name[] = "/tmp/tesk-pager-XXXXXX";
        dir_ = ::mkdtemp(name);
        fs::create_directories(dir_ / "bin");
        fs::create_directories(dir_ / "var/log");
        std::ofstream(dir_ / "var/log/syslog.log") << "line\n";
        std::ofstream pager(dir_ / "bin/less");
        pager << "#!/bin/sh\nR=" << dir_.string() << "\n"
              << "{ for a in \"$@\"; do printf '%s\\n' \"$a\"; done\n"
              << "  printf 'LESSSECURE=%s\\n' \"${LESSSECURE-unset}\"\n"
              // Fields 5 and 8 of stat: own process group, terminal's foreground group.
              << "  read -r _ _ _ _ pgrp _ _ tpgid _ < /proc/$$/stat\n"
              << "  [ \"$pgrp\" = \"$tpgid\" ] && echo foreground || echo background\n"
              << "} >> " << (dir_ / "record").string() << "\n"
              << tail << "\n";
        pager.close();
        fs::permissions(dir_ / "bin/less", fs::perms::owner_all);
    }
    ~PagerRoot() {
        for (const char* name : {"pager", "helper"})
            if (pid(name) > 0 && !TeskTest::Gone(pid(name))) ::kill(pid(name), SIGKILL);
        fs::remove_all(dir_);
    }
    const fs::path& dir() const { return dir_; }
    std::string record() const { return ReadAll(dir_ / "record"); }
    std::string file(const char* name) const { return ReadAll(dir_ / name); }
    // A process id the script wrote to a file; -1 when there is none.
    pid_t pid(const char* name) const {
        const std::string text = file(name);
        return text.empty() ? -1 : std::stoi(text);
    }

private:
    fs::path dir_;
};

// Runs body in a child process whose controlling terminal is a new
// pseudo-terminal on descriptors 0 and 1, as the console's is. Returns the
// child's exit status (-1 when it did not end within 10 s).
int InTerminal(const fs::path& root, const std::function<int()>& body) {
    int master = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (master < 0 || ::grantpt(master) != 0 || ::unlockpt(master) != 0) return -1;
    std::string slave = ::ptsname(master);
    pid_t pid = ::fork();
    if (pid == 0) {
        ::setsid();
        int fd = ::open(slave.c_str(), O_RDWR);  // becomes the controlling terminal
        if (fd < 0) ::_exit(100);
        ::dup2(fd, 0);
        ::dup2(fd, 1);
        ::setenv("TESK_ROOT", root.c_str(), 1);
        ::_exit(body());
    }
    int status = 0;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (::waitpid(pid, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > deadline) {
            ::kill(pid, SIGKILL);
            ::waitpid(pid, &status, 0);
            ::close(master);
            return -1;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ::close(master);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// The console's view after the pager: 0 when LESSSECURE is back to expected
// (nullptr: set but empty), the terminal is this process group's again and the
// terminal settings are unchanged; else a code naming what differs.
int AfterPager(const char* expected, int pagerStatus) {
    termios before{};
    ::tcgetattr(1, &before);
    int status = Tesk::ViewWithPager("/bin/less", "/var/log/syslog.log");
    if (status != pagerStatus) return 10;
    const char* now = std::getenv("LESSSECURE");
    if (now == nullptr || std::string(now) != (expected ? expected : "")) return 11;
    if (::tcgetpgrp(0) != ::getpgrp()) return 12;
    termios after{};
    ::tcgetattr(1, &after);
    if (before.c_lflag != after.c_lflag || before.c_iflag != after.c_iflag) return 13;
    return 0;
}

TEST(LogPager, GetsTheLogTheTerminalAndAFencedEnvironmentAndGivesThemBack) {
    // The pager leaves a helper behind and ends with its own status.
    PagerRoot root("env | sort > $R/env\nsleep 300 &\necho $! > $R/helper\nexit 3");
    EXPECT_EQ(InTerminal(root.dir(),
                         [] {
                             ::setenv("TERM", "xterm", 1);
                             ::setenv("TERMINFO", "/usr/share/terminfo", 1);
                             ::setenv("LANG", "en_US.UTF-8", 1);
                             ::setenv("LC_TIME", "C", 1);
                             ::setenv("LESSSECURE", "keepme", 1);
                             ::setenv("ASAN_OPTIONS", "log_path=/tmp/x", 1);
                             ::setenv("TESK_FENCE_MARKER", "leak", 1);
                             return AfterPager("keepme", 3);
                         }),
              0);
    EXPECT_EQ(root.record(), "-cfP\n<Q> Quit </> RegExp Search <H> Help\n" +
                                 (root.dir() / "var/log/syslog.log").string() +
                                 "\nLESSSECURE=1\nforeground\n");
    // Only the terminal, the locale and LESSSECURE; the shell running the
    // script adds its own PWD (and maybe SHLVL).
    std::string kept;
    std::istringstream lines(root.file("env"));
    for (std::string line; std::getline(lines, line);)
        if (!line.starts_with("PWD=") && !line.starts_with("SHLVL=") && !line.starts_with("_="))
            kept += line + "\n";
    EXPECT_EQ(kept,
              "LANG=en_US.UTF-8\nLC_TIME=C\nLESSSECURE=1\nTERMINFO=/usr/share/terminfo\n"
              "TERM=xterm\n");
    // Nothing the pager started outlives it.
    EXPECT_TRUE(TeskTest::GoneWithin(root.pid("helper"), std::chrono::milliseconds(2000)));
}

TEST(LogPager, APagerStoppedByJobControlIsResumed) {
    PagerRoot root("kill -STOP $$\necho resumed >> \"$(dirname \"$0\")/../record\"");
    EXPECT_EQ(InTerminal(root.dir(),
                         [] {
                             ::unsetenv("LESSSECURE");
                             return AfterPager(nullptr, 0);
                         }),
              0);
    EXPECT_NE(root.record().find("resumed"), std::string::npos);
}

}  // namespace
