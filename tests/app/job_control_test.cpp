// The console and its terminal's job control: Ctrl-Z (and the other stop
// signals) change nothing on any screen, an interrupted wait is no error,
// flow control never holds the console, and every way the console ends (a
// crash too) gives the terminal back with echo and line editing.
#include <fcntl.h>
#include <signal.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>

#include "tests/session/session_support.h"

using namespace SessionTest;

namespace {

// The console's terminal (the pseudo-terminal's slave side), found while the
// console runs; its settings can be read after the console has ended.
class TerminalOf {
public:
    explicit TerminalOf(ConsoleSession& console) {
        std::error_code error;
        path_ =
            std::filesystem::read_symlink("/proc/" + std::to_string(console.pid()) + "/fd/1", error)
                .string();
    }
    // Echo and canonical input, as a shell needs them.
    bool cooked() const {
        const int fd = ::open(path_.c_str(), O_RDWR | O_NOCTTY);
        if (fd < 0) return false;
        termios settings{};
        const bool ok = ::tcgetattr(fd, &settings) == 0;
        ::close(fd);
        return ok && (settings.c_lflag & ICANON) && (settings.c_lflag & ECHO);
    }
    const std::string& path() const { return path_; }
    // Stops the terminal's output as flow control would: writes to it wait.
    bool stopOutput() const {
        const int fd = ::open(path_.c_str(), O_RDWR | O_NOCTTY);
        const bool stopped = fd >= 0 && ::tcflow(fd, TCOOFF) == 0;
        if (fd >= 0) ::close(fd);
        return stopped;
    }

private:
    std::string path_;
};

// Sends every way of stopping a job and checks that nothing changed: no byte
// written, still running.
void StopSignalsChangeNothing(ConsoleSession& console, const std::string& where) {
    SCOPED_TRACE(where);
    ASSERT_TRUE(console.waitForQuiet());
    const std::string screen = console.text();
    const std::size_t written = console.output().size();
    console.type(Key::Ctrl('z'));
    for (int sig : {SIGTSTP, SIGTTIN, SIGTTOU}) console.signal(sig);
    // Whatever the console would do with them, it does within this time.
    ASSERT_TRUE(console.waitForQuiet(std::chrono::milliseconds(500)));
    EXPECT_EQ(console.output().size(), written)
        << "written after Ctrl-Z: " << console.output().substr(written);
    EXPECT_EQ(console.text(), screen);
    EXPECT_EQ(console.status(), TeskTest::ExitStatus::Running());
}

TEST(JobControl, CtrlZChangesNothingOnAnyScreen) {
    SimRoot root;
    ConsoleSession console(root, RemoteShell(80, 25));
    ASSERT_TRUE(WaitWelcome(console));
    TerminalOf terminal(console);
    StopSignalsChangeNothing(console, "welcome screen");

    ASSERT_TRUE(KeyThen(console, FKey(2), "Login Name:"));
    StopSignalsChangeNothing(console, "login dialog");
    // The screen goes on taking keys: a failed login's message.
    console.key(Key::Enter);
    console.type("wrong");
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Invalid login or password."));
    StopSignalsChangeNothing(console, "message dialog");
    ASSERT_TRUE(Dismiss(console, "Invalid login or password."));
    ASSERT_TRUE(console.waitForQuiet());  // keys typed while the dialog returns are dropped
    ASSERT_TRUE(Dismiss(console, "Login Name:", Key::Esc));

    ASSERT_TRUE(LogIn(console));
    StopSignalsChangeNothing(console, "menu");

    // An interrupted wait is no error.
    EXPECT_TRUE(root.logLinesWith("poll() failed").empty()) << root.logTail();
    console.signal(SIGTERM);
    EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
    EXPECT_TRUE(terminal.cooked()) << terminal.path();
}

TEST(JobControl, EveryWayOutGivesTheTerminalBack) {
    SimRoot root;
    struct Way {
        const char* name;
        std::function<void(ConsoleSession&)> end;
    };
    const Way ways[] = {
        {"Ctrl-C", [](ConsoleSession& c) { c.type(Key::Ctrl('c')); }},
        {"Ctrl-\\", [](ConsoleSession& c) { c.type(std::string(1, '\x1c')); }},
        {"SIGTERM", [](ConsoleSession& c) { c.signal(SIGTERM); }},
        {"SIGHUP", [](ConsoleSession& c) { c.signal(SIGHUP); }},
        {"resize", [](ConsoleSession& c) { c.resize(90, 30); }},
    };
    std::size_t sessions = 0;
    for (const Way& way : ways) {
        SCOPED_TRACE(way.name);
        ConsoleSession console(root, RemoteShell(80, 25));
        ASSERT_TRUE(LogIn(console));
        TerminalOf terminal(console);
        // A stop signal on the way does not change how it ends.
        console.type(Key::Ctrl('z'));
        way.end(console);
        EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
        EXPECT_TRUE(terminal.cooked()) << terminal.path();
        // The session's end is recorded as a logout.
        ++sessions;
        EXPECT_EQ(root.logLinesWith("User root logged out").size(), sessions);
        auto logouts = AuditRecords(root, "tesk.logout");
        ASSERT_EQ(logouts.size(), sessions);
        EXPECT_EQ(logouts.back()["data"], (Json{{"reason", "Session closed"}}));
    }
}

TEST(JobControl, AQuitEndsTheConsoleWhileItsTerminalTakesNoOutput) {
    SimRoot root;
    ConsoleSession console(root, RemoteShell(80, 25));
    ASSERT_TRUE(WaitWelcome(console));
    TerminalOf terminal(console);
    // The next frame's write waits for good; so would the end of curses.
    ASSERT_TRUE(terminal.stopOutput());
    console.key(FKey(2));
    console.signal(SIGTERM);
    // Held by the stopped output it would never end; the wait's limit only
    // turns that into a failure.
    EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
    EXPECT_TRUE(root.hasLogLine("Ending at once: the terminal takes no output"));
    EXPECT_TRUE(terminal.cooked()) << terminal.path();
}

TEST(JobControl, ACtrlSTypedBeforeTheStartHoldsNothingUp) {
    // The console, and tesk-sim's banner before it starts the console: both
    // turn flow control off before their first byte.
    SimRoot root;
    for (const bool throughSim : {false, true}) {
        SCOPED_TRACE(throughSim ? "tesk-sim run" : "tesk");
        SessionOptions options = RemoteShell(80, 25);
        options.outputStopped = true;
        if (throughSim) {
            options.program = TeskTest::SimBinary();
            options.args = {"run", root.path()};
        }
        ConsoleSession console(root, options);
        ASSERT_TRUE(WaitWelcome(console));
        TerminalOf terminal(console);
        // Ctrl-S is a key now; a quit is obeyed at once.
        console.type("\x13");
        if (throughSim)
            console.type(Key::Ctrl('c'));  // tesk-sim waits for the console it started
        else
            console.signal(SIGTERM);
        EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
        EXPECT_TRUE(terminal.cooked()) << terminal.path();
    }
}

TEST(JobControl, EverySignalThatEndsTheConsoleGivesTheTerminalBack) {
    SimRoot root;
    // Quit signals and a restart without a session end it with status 0, a
    // fatal signal with its own; neither goes through the normal end's
    // palette reset.
    for (const int sig :
         {SIGTERM, SIGINT, SIGQUIT, SIGHUP, SIGUSR2, SIGSEGV, SIGBUS, SIGABRT, SIGFPE, SIGILL}) {
        SCOPED_TRACE(::strsignal(sig));
        SessionOptions options = RemoteShell(80, 25);
        // A sanitizer's handler takes a fatal signal after the console's.
        options.failOnSanitizerReport = false;
        ConsoleSession console(root, options);
        ASSERT_TRUE(WaitWelcome(console));
        TerminalOf terminal(console);
        console.signal(sig);
        const bool quit =
            sig == SIGTERM || sig == SIGINT || sig == SIGQUIT || sig == SIGHUP || sig == SIGUSR2;
        const ExitStatus status = console.waitExit();
        EXPECT_EQ(status == ExitStatus::Exited(0), quit) << status;
        EXPECT_TRUE(terminal.cooked()) << terminal.path();
        EXPECT_EQ(console.output().find("\033]R"), std::string::npos);
    }
}

}  // namespace
