// The pager kept in its fence: the environment it gets, its process group
// ended by the console's quit and at its own end, and a resize it saw passed
// on to the console.
#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <clocale>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "platform/waiting.h"
#include "session/log_viewer.h"

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

std::string ReadAll(const fs::path& file) {
    std::ifstream in(file);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

bool Gone(pid_t pid) {
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string line;
    if (!std::getline(stat, line)) return true;
    const auto close = line.rfind(')');
    return close != std::string::npos && line.compare(close + 2, 1, "Z") == 0;
}

bool GoneWithin(pid_t pid, std::chrono::seconds limit) {
    const auto deadline = Clock::now() + limit;
    while (!Gone(pid)) {
        if (Clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

// A host root whose pager is a script with the given body; $R is the root.
class PagerRoot {
public:
    explicit PagerRoot(const std::string& body) {
        char name[] = "/tmp/tesk-fence-XXXXXX";
        dir_ = ::mkdtemp(name);
        fs::create_directories(dir_ / "bin");
        fs::create_directories(dir_ / "var/log");
        std::ofstream(dir_ / "var/log/syslog.log") << "line\n";
        std::ofstream(dir_ / "bin/less") << "#!/bin/sh\nR=" << dir_.string() << "\n"
                                         << body << "\n";
        fs::permissions(dir_ / "bin/less", fs::perms::owner_all);
    }
    ~PagerRoot() {
        for (const char* file : {"pager", "helper"}) {
            std::string pid = ReadAll(dir_ / file);
            if (!pid.empty() && !Gone(std::stoi(pid))) ::kill(std::stoi(pid), SIGKILL);
        }
        fs::remove_all(dir_);
    }
    const fs::path& dir() const { return dir_; }
    std::string file(const char* name) const { return ReadAll(dir_ / name); }
    pid_t pid(const char* name) const { return std::stoi(file(name)); }

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
    const auto deadline = Clock::now() + std::chrono::seconds(10);
    while (::waitpid(pid, &status, WNOHANG) == 0) {
        if (Clock::now() > deadline) {
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

int View() {
    return Tesk::ViewWithPager("/bin/less", "/var/log/syslog.log");
}

TEST(PagerFence, ThePagerGetsTheTerminalTheLocaleAndLessSecureOnly) {
    PagerRoot root("env | sort > $R/env");
    EXPECT_EQ(InTerminal(root.dir(),
                         [] {
                             ::setenv("TERM", "xterm", 1);
                             ::setenv("TERMINFO", "/usr/share/terminfo", 1);
                             ::setenv("LANG", "en_US.UTF-8", 1);
                             ::setenv("LC_TIME", "C", 1);
                             ::setenv("LESSSECURE", "keepme", 1);
                             ::setenv("ASAN_OPTIONS", "log_path=/tmp/x", 1);
                             ::setenv("TESK_FENCE_MARKER", "leak", 1);
                             return View();
                         }),
              0);
    std::string env = root.file("env");
    // The shell running the script adds its own PWD (and maybe SHLVL).
    std::string kept;
    std::istringstream lines(env);
    for (std::string line; std::getline(lines, line);)
        if (!line.starts_with("PWD=") && !line.starts_with("SHLVL=") && !line.starts_with("_="))
            kept += line + "\n";
    EXPECT_EQ(kept,
              "LANG=en_US.UTF-8\nLC_TIME=C\nLESSSECURE=1\nTERMINFO=/usr/share/terminfo\n"
              "TERM=xterm\n")
        << env;

    // Without a locale in the environment the console's own character set.
    EXPECT_EQ(InTerminal(root.dir(),
                         [] {
                             ::unsetenv("LANG");
                             ::unsetenv("LC_ALL");
                             ::unsetenv("LC_CTYPE");
                             if (!std::setlocale(LC_CTYPE, "C.UTF-8")) return 50;
                             return View();
                         }),
              0);
    EXPECT_NE(root.file("env").find("LC_CTYPE=C.UTF-8\n"), std::string::npos) << root.file("env");
}

TEST(PagerFence, AQuitEndsAPagerThatIgnoresItWithEverythingItStarted) {
    PagerRoot root(
        "trap '' TERM INT HUP\necho $$ > $R/pager\nsleep 300 &\necho $! > $R/helper\n"
        "while :; do sleep 1; done");
    EXPECT_EQ(InTerminal(root.dir(),
                         [] {
                             std::thread quit([] {
                                 std::this_thread::sleep_for(std::chrono::milliseconds(300));
                                 Tesk::Platform::NoteQuitRequest();
                             });
                             const auto start = Clock::now();
                             View();
                             quit.join();
                             return Clock::now() - start < std::chrono::seconds(4) ? 0 : 1;
                         }),
              0);
    EXPECT_TRUE(GoneWithin(root.pid("pager"), std::chrono::seconds(2)));
    EXPECT_TRUE(GoneWithin(root.pid("helper"), std::chrono::seconds(2)));
}

TEST(PagerFence, NothingThePagerStartedOutlivesIt) {
    PagerRoot root("sleep 300 &\necho $! > $R/helper\nexit 0");
    EXPECT_EQ(InTerminal(root.dir(), [] { return View(); }), 0);
    EXPECT_TRUE(GoneWithin(root.pid("helper"), std::chrono::seconds(2)));
}

// The console's view of a resize the pager saw: 0 when SIGWINCH is pending
// for the console after the pager exactly when `resized`.
int ResizeSeen(bool resized) {
    sigset_t winch, pending;
    sigemptyset(&winch);
    sigaddset(&winch, SIGWINCH);
    ::pthread_sigmask(SIG_BLOCK, &winch, nullptr);
    if (View() != 0) return 20;
    sigpending(&pending);
    return sigismember(&pending, SIGWINCH) == (resized ? 1 : 0) ? 0 : 21;
}

TEST(PagerFence, AResizeWhileThePagerRunsReachesTheConsoleWhenItReturns) {
    PagerRoot resizing("stty cols 91 rows 21");
    EXPECT_EQ(InTerminal(resizing.dir(), [] { return ResizeSeen(true); }), 0);
    PagerRoot still("exit 0");
    EXPECT_EQ(InTerminal(still.dir(), [] { return ResizeSeen(false); }), 0);
}

}  // namespace
