// Start-up guards and terminal set-up, tested in-process: the virtual-terminal
// argument, the terminal type, the pid file, the key table and the colours.
#include <curses.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "app/startup.h"
#include "platform/pid_text.h"
#include "tests/app/fixtures.h"

namespace {

using VirtualTerminalArgument = HostRootTest;

TEST_F(VirtualTerminalArgument, OnlyOneToSixtyThreeIsAccepted) {
    EXPECT_EQ(Tesk::ParseVirtualTerminal("1"), 1);
    EXPECT_EQ(Tesk::ParseVirtualTerminal("63"), 63);
    for (const char* bad : {"0", "64", "-3", "x"}) {
        EXPECT_FALSE(Tesk::ParseVirtualTerminal(bad).has_value()) << bad;
        EXPECT_NE(
            Read("var/log/syslog.log").find(std::string("Invalid VT specified for TESK: ") + bad),
            std::string::npos)
            << bad;
    }
    EXPECT_EQ(Read("var/log/syslog.log").find("TESK: 63"), std::string::npos);
}

// Sets (value) or clears (nullptr) an environment variable; ctest runs each
// case in a process of its own.
void SetEnv(const char* name, const char* value) {
    value ? ::setenv(name, value, 1) : ::unsetenv(name);
}

TEST(TerminalType, ConsoleRemoteAndXtermRules) {
    struct Case {
        bool onConsole;
        const char* term;
        const char* ssh;
        const char* wantTerm;
        bool wantLocal;
    } cases[] = {
        {false, nullptr, nullptr, "vt102", false},             // unset: filled in
        {false, "linux", nullptr, "vt102", false},             // linux off the console
        {false, "xterm", nullptr, "xterm", true},              // local xterm
        {false, "xterm", "10.0.0.1 5000 22", "xterm", false},  // xterm over SSH
        {false, "screen", nullptr, "screen", false},           // kept as it is
        {true, "xterm", nullptr, "linux", true},               // a real console is always linux
    };
    for (const auto& c : cases) {
        SetEnv("TERM", c.term);
        SetEnv("SSH_CLIENT", c.ssh);
        SetEnv("TERMINFO", nullptr);
        bool local = Tesk::ChooseTerminalType(c.onConsole);
        EXPECT_STREQ(std::getenv("TERM"), c.wantTerm) << (c.term ? c.term : "(unset)");
        EXPECT_EQ(local, c.wantLocal) << (c.term ? c.term : "(unset)");
        EXPECT_STREQ(std::getenv("TERMINFO"), "/usr/share/terminfo");
    }
    SetEnv("TERMINFO", "/elsewhere");
    Tesk::ChooseTerminalType(false);
    EXPECT_STREQ(std::getenv("TERMINFO"), "/elsewhere");
}

using PidFile = HostRootTest;

TEST_F(PidFile, WrittenWhenAbsentOrStaleAndLeftAloneWhenLive) {
    const std::string pidFile = "var/run/tesk.pid";
    const std::string own = std::to_string(::getpid());

    Tesk::GuardPidFile();
    EXPECT_EQ(Read(pidFile), own);

    // A process that has ended: its pid is stale.
    pid_t dead = ::fork();
    if (dead == 0) ::_exit(0);
    ::waitpid(dead, nullptr, 0);
    std::ofstream(fs::path(root_) / pidFile) << dead;
    Tesk::GuardPidFile();
    EXPECT_EQ(Read(pidFile), own);

    // A live process: the file stays as it is and the attempt is logged.
    pid_t live = ::fork();
    if (live == 0) {
        ::pause();
        ::_exit(0);
    }
    std::ofstream(fs::path(root_) / pidFile) << live << "\n";
    Tesk::GuardPidFile();
    EXPECT_EQ(Read(pidFile), std::to_string(live) + "\n");
    EXPECT_NE(Read("var/log/syslog.log")
                  .find("Attempt to run multiple TESK instances, not updating /var/run/tesk.pid"),
              std::string::npos);
    ::kill(live, SIGKILL);
    ::waitpid(live, nullptr, 0);

    // Garbage, numbers out of the pid range (one that would wrap to -1
    // among them) and numbers with trailing junk are not a live instance.
    for (const char* junk :
         {"", "abc", "0", "-5", "99999999999999999999", "4294967295", "12x", "1 2"}) {
        std::ofstream(fs::path(root_) / pidFile, std::ios::trunc) << junk;
        Tesk::GuardPidFile();
        EXPECT_EQ(Read(pidFile), own) << junk;
        EXPECT_FALSE(Tesk::Platform::ParsePidText(junk)) << junk;
    }
    EXPECT_EQ(Tesk::Platform::ParsePidText(" 42\n"), 42);
}

using EscapeSequences = CursesOnPipes;

TEST_F(EscapeSequences, EveryVariantArrivesAsItsKey) {
    Start("linux");
    struct {
        const char* bytes;
        int key;
    } cases[] = {
        {"\0330", KEY_F(10)},    {"\033@", KEY_F(12)},  {"\033OY", KEY_F(12)},
        {"\0331", KEY_F(1)},     {"\033!", KEY_F(11)},  {"\033[11~", KEY_F(1)},
        {"\033[24~", KEY_F(12)}, {"\033[M", KEY_F(1)},  {"\033[X", KEY_F(12)},
        {"\033OP", KEY_F(1)},    {"\033OX", KEY_F(9)},  {"\033h", KEY_HOME},
        {"\033k", KEY_END},      {"\033+", KEY_IC},     {"\033-", KEY_DC},
        {"\033?", KEY_PPAGE},    {"\033/", KEY_NPAGE},  {"\033OA", KEY_UP},
        {"\033[D", KEY_LEFT},    {"\033[1~", KEY_HOME}, {"\033[6~", KEY_NPAGE},
        {"\177", KEY_BACKSPACE}, {"\033R", KEY_RESIZE}, {"a", 'a'},
    };
    for (const auto& c : cases) EXPECT_EQ(KeyFor(c.bytes), c.key) << c.bytes + 1;
}

}  // namespace
