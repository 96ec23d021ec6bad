// Runs a program (by default the console) in a pseudo-terminal of its own and
// keeps the screen it draws, for tests that type keys and look at the screen.
//
// Everything happens on the test's thread: every call first takes in what the
// program wrote so far, and waits take in output until their condition holds
// or their time runs out. Nothing sleeps for a fixed time.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <initializer_list>
#include <optional>
#include <ostream>
#include <source_location>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/harness/keys.h"
#include "tests/harness/screen.h"
#include "tests/harness/sim_root.h"

namespace TeskTest {

struct SessionOptions {
    // The program; empty means the console (TeskBinary()).
    std::string program{};
    // Arguments after the program name.
    std::vector<std::string> args{};
    int cols = 80;
    int rows = 25;
    std::string term = "linux";
    // SSH_CLIENT for the program, when it should believe it runs remotely.
    std::optional<std::string> sshClient{};
    // Authentication through pam_wrapper and the root's own users.
    bool pamWrapper = true;
    // More environment variables; they replace any of the same name.
    std::vector<std::pair<std::string, std::string>> env{};
    // Fail the test when the program leaves a sanitizer report behind.
    bool failOnSanitizerReport = true;
    // The terminal's output is stopped before the program starts, as by a
    // Ctrl-S typed then (a new terminal has flow control on): the program's
    // writes wait until it turns flow control off or a Ctrl-Q comes.
    bool outputStopped = false;
};

// How a program ended, or that it has not.
struct ExitStatus {
    enum class Kind { Running, Exited, Signalled };
    Kind kind = Kind::Running;
    int value = 0;  // exit status or signal number

    static ExitStatus Exited(int status) { return {Kind::Exited, status}; }
    static ExitStatus Signalled(int signal) { return {Kind::Signalled, signal}; }
    static ExitStatus Running() { return {}; }
    bool operator==(const ExitStatus&) const = default;
};
std::ostream& operator<<(std::ostream& out, const ExitStatus& status);

class ConsoleSession {
public:
    using Timeout = std::chrono::milliseconds;

    // Starts the program against the root: TESK_ROOT, TERM, PATH, SSH_CLIENT
    // when asked for, and the pam_wrapper variables. Throws std::runtime_error
    // when the program cannot be started.
    explicit ConsoleSession(const SimRoot& root, SessionOptions options = {},
                            std::source_location where = std::source_location::current());
    // Starts a program without a host root (no TESK_ROOT, no pam_wrapper).
    explicit ConsoleSession(SessionOptions options,
                            std::source_location where = std::source_location::current());
    // Kills the program (and what it started) when it still runs. A
    // sanitizer report the program left fails the test at the line that
    // started it.
    ~ConsoleSession();
    ConsoleSession(const ConsoleSession&) = delete;
    ConsoleSession& operator=(const ConsoleSession&) = delete;

    pid_t pid() const { return pid_; }

    // Input. Keys are byte strings: see keys.h.
    // A failure (the program has ended, or takes no input) is reported at
    // the caller's line.
    void type(std::string_view text, std::source_location where = std::source_location::current());
    void key(std::string_view key, std::source_location where = std::source_location::current()) {
        type(key, where);
    }
    void keys(std::initializer_list<std::string_view> keys,
              std::source_location where = std::source_location::current());

    // Waits until text is on the screen (see Screen::contains). On timeout, or
    // when the program ends without showing it, fails the test at the caller's
    // line with the screen and returns false.
    bool waitForText(std::string_view text, Timeout timeout = DefaultTimeout(),
                     std::source_location where = std::source_location::current());
    bool waitForTextGone(std::string_view text, Timeout timeout = DefaultTimeout(),
                         std::source_location where = std::source_location::current());
    // Waits until the condition holds; it is checked after every piece of
    // output and at least every 20 ms (it may look at files, too). what
    // names the condition in the failure message.
    bool waitFor(const std::function<bool()>& condition, std::string_view what,
                 Timeout timeout = DefaultTimeout(),
                 std::source_location where = std::source_location::current());
    // Waits until the program has written nothing for quiet (its screen has
    // settled), at most timeout.
    bool waitForQuiet(Timeout quiet = std::chrono::milliseconds(200),
                      Timeout timeout = DefaultTimeout(),
                      std::source_location where = std::source_location::current());

    const Screen& screen();
    std::string text() { return screen().text(); }
    std::string row(int row) { return screen().row(row); }
    Cell cell(int col, int row) { return screen().cell(col, row); }
    std::optional<Position> find(std::string_view text) { return screen().find(text); }
    // The screen, the program's state and the root's last log lines.
    std::string dump();

    const std::string& output();

    void resize(int cols, int rows);
    void signal(int sig);

    // Waits for the program to end. Running (and a test failure at the
    // caller's line) when it has not ended in time.
    ExitStatus waitExit(Timeout timeout = DefaultTimeout(),
                        std::source_location where = std::source_location::current());
    ExitStatus status();

    // Contents of the sanitizer reports the program left (empty when none).
    std::string sanitizerReports() const;

private:
    ConsoleSession(const SimRoot* root, SessionOptions options, std::source_location where);
    void launch();
    // Reads what the program wrote, waiting up to waitMs for the first byte
    // (0: only what is there). Returns true when something was read.
    bool pump(int waitMs);
    // Takes in everything the program has written so far.
    void drain() {
        while (pump(0)) {
        }
    }
    // The waits' loop; endsAtExit gives up once the program can write no more.
    bool wait(const std::function<bool()>& condition, const std::string& what, Timeout timeout,
              std::source_location where, bool endsAtExit);
    void reap(bool block);
    void fail(std::source_location where, const std::string& message);

    SessionOptions options_;
    std::source_location started_;
    const SimRoot* root_ = nullptr;
    std::string sanitizerPrefix_;
    Screen screen_;
    std::string output_;
    int master_ = -1;
    pid_t pid_ = -1;
    bool eof_ = false;
    ExitStatus exit_;
    std::chrono::steady_clock::time_point lastOutput_;
};

}  // namespace TeskTest
