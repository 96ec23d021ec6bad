// Shared steps of the screen tests: starting the console the way a case needs
// it, logging in, opening a menu entry, and reading the audit and event logs.
#pragma once

#include <chrono>
#include <source_location>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/harness/console_session.h"

namespace SessionTest {

using TeskTest::ConsoleSession;
using TeskTest::ExitStatus;
using TeskTest::Json;
using TeskTest::SessionOptions;
using TeskTest::SimRoot;
namespace Key = TeskTest::Key;

inline constexpr char kPassword[] = "tesk-demo";

// A function key as "ESC [ n ~", which the console knows on every terminal it
// runs on (the linux console's own "ESC [ [ A" forms mean nothing under xterm
// or vt102).
inline std::string FKey(int n) {
    static constexpr const char* kCodes[] = {"11", "12", "13", "14", "15", "17",
                                             "18", "19", "20", "21", "23", "24"};
    return std::string("\x1b[") + kCodes[n - 1] + "~";
}

// The host's own console: "xterm" without SSH_CLIENT, with colours.
inline SessionOptions LocalConsole(int cols = 100, int rows = 30) {
    SessionOptions options;
    options.cols = cols;
    options.rows = rows;
    options.term = "xterm";
    options.env = {{"ESCDELAY", "50"}};
    return options;
}

// A remote shell: SSH_CLIENT set, 256 colours.
inline SessionOptions RemoteShell(int cols = 100, int rows = 30) {
    SessionOptions options = LocalConsole(cols, rows);
    options.term = "xterm-256color";
    options.sshClient = "192.168.10.99 50000 22";
    return options;
}

// Waits until text is shown and the screen has settled. A window that
// becomes active drops the keys typed ahead of it, so a test types only once
// the screen has been quiet for a while (generous: the machine may be busy).
inline bool WaitSettled(ConsoleSession& console, std::string_view text,
                        std::source_location where = std::source_location::current()) {
    if (!console.waitForText(text, TeskTest::DefaultTimeout(), where)) return false;
    return console.waitForQuiet(std::chrono::milliseconds(400), TeskTest::DefaultTimeout(), where);
}

// Presses a key and waits until text shows and the screen settles.
inline bool KeyThen(ConsoleSession& console, std::string_view key, std::string_view text,
                    std::source_location where = std::source_location::current()) {
    console.key(key, where);
    return WaitSettled(console, text, where);
}

// Closes what shows text with key; true once text is gone and the screen
// has settled.
inline bool Dismiss(ConsoleSession& console, std::string_view text,
                    std::string_view key = Key::Enter,
                    std::source_location where = std::source_location::current()) {
    console.key(key, where);
    return console.waitForTextGone(text, TeskTest::DefaultTimeout(), where) &&
           console.waitForQuiet(std::chrono::milliseconds(400), TeskTest::DefaultTimeout(), where);
}

// Waits for the welcome screen's complete frame (the memory line is filled
// last).
inline bool WaitWelcome(ConsoleSession& console,
                        std::source_location where = std::source_location::current()) {
    return WaitSettled(console, "iB Memory", where);
}

// From the welcome screen through the login dialog with user and password
// (focus on the login field, as the dialog opens in password mode).
inline void EnterCredentials(ConsoleSession& console, std::string_view user,
                             std::string_view password,
                             std::source_location where = std::source_location::current()) {
    console.type(user, where);
    console.key(Key::Enter, where);
    console.type(password, where);
    console.key(Key::Enter, where);
}

// Replaces the value of the field with the caret: rubs out what is there (up
// to 16 characters), types text.
inline void Retype(ConsoleSession& console, std::string_view text) {
    console.key(Key::End);
    for (int i = 0; i < 16; ++i) console.key(Key::Backspace);
    console.type(text);
}

// The row the text stands on, -1 when it is not on the screen.
inline int RowOf(ConsoleSession& console, std::string_view text) {
    const auto at = console.find(text);
    return at ? at->row : -1;
}

// The row the caret stands on, or -1 when it is hidden.
inline int CaretRow(ConsoleSession& console) {
    const auto& screen = console.screen();
    return screen.cursorVisible() ? screen.cursor().row : -1;
}

// Waits until the caret stands on the row of label (the focused field).
inline bool WaitCaretOn(ConsoleSession& console, std::string_view label,
                        std::source_location where = std::source_location::current()) {
    const bool moved = console.waitFor(
        [&] { return RowOf(console, label) >= 0 && CaretRow(console) == RowOf(console, label); },
        std::string("the caret on ") + std::string(label), TeskTest::DefaultTimeout(), where);
    return moved &&
           console.waitForQuiet(std::chrono::milliseconds(200), TeskTest::DefaultTimeout(), where);
}

// From the settled welcome screen: F2, then user and password typed into the
// login dialog, each once its field has the caret; false when a step did not
// show.
inline bool EnterLogin(ConsoleSession& console, std::string_view user, std::string_view password,
                       std::source_location where) {
    if (!WaitWelcome(console, where)) return false;
    console.key(FKey(2), where);
    if (!WaitSettled(console, "Login Name:", where) || !WaitCaretOn(console, "Login Name:", where))
        return false;
    console.type(user, where);
    console.key(Key::Enter, where);
    if (!WaitCaretOn(console, "Password:", where)) return false;
    console.type(password, where);
    console.key(Key::Enter, where);
    return true;
}

// F2, then a successful login; true when the customization menu is up.
inline bool LogIn(ConsoleSession& console, std::string_view user = "root",
                  std::string_view password = kPassword,
                  std::source_location where = std::source_location::current()) {
    if (!EnterLogin(console, user, password, where)) return false;
    // The title stands before the menu asks the host about its entries; the
    // right pane's footer comes last.
    if (!console.waitForText("System Customization", TeskTest::DefaultTimeout(), where))
        return false;
    return WaitSettled(console, "<Esc> Log Out", where);
}

// The heading of the right pane of the menu, or of a window opened from it:
// the selected entry. The pane starts at the middle column.
inline std::string PaneHeading(ConsoleSession& console) {
    const std::size_t from = static_cast<std::size_t>(console.screen().cols() / 2 + 2);
    const std::string row = console.row(1);
    return row.size() > from ? row.substr(from) : "";
}

// The right half of the screen (the selected entry's pane) without blanks and
// line ends, so that wrapped text reads whole.
inline std::string PaneWithoutBlanks(ConsoleSession& console) {
    std::string text;
    const std::size_t from = static_cast<std::size_t>(console.screen().cols() / 2);
    for (int r = 0; r < console.screen().rows(); ++r) {
        const std::string row = console.row(r);
        if (row.size() > from) text += row.substr(from);
    }
    std::erase(text, ' ');
    return text;
}

// Presses key once; true when the selection moved (the pane's heading
// changed) and the screen settled, false when nothing moved (the list ends).
inline bool StepSelection(ConsoleSession& console, std::string_view key = Key::Down,
                          std::source_location where = std::source_location::current()) {
    const std::string before = PaneHeading(console);
    console.key(key, where);
    // A poll rather than waitFor: at the end of the list nothing moves, and
    // that is an answer, not a failure.
    const auto deadline =
        std::chrono::steady_clock::now() + TeskTest::Scaled(std::chrono::milliseconds(1500));
    while (PaneHeading(console) == before && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return PaneHeading(console) != before &&
           console.waitForQuiet(std::chrono::milliseconds(100), TeskTest::DefaultTimeout(), where);
}

// Selects entry in the menu or window on the screen, moving down and, when the
// list ends first, up; a failure at the caller's line when it is not there.
inline bool GoToEntry(ConsoleSession& console, std::string_view entry,
                      std::source_location where = std::source_location::current()) {
    for (const std::string_view key : {Key::Down, Key::Up})
        for (int moves = 0; moves < 40; ++moves) {
            if (PaneHeading(console).starts_with(entry)) return true;
            if (!StepSelection(console, key, where)) break;
        }
    ADD_FAILURE_AT(where.file_name(), where.line()) << "no entry " << entry << "\n"
                                                    << console.dump();
    return false;
}

// Selects entry and opens it with <Enter>; true once text shows and the
// screen has settled.
inline bool OpenSelected(ConsoleSession& console, std::string_view entry, std::string_view text,
                         std::source_location where = std::source_location::current()) {
    if (!GoToEntry(console, entry, where)) return false;
    console.key(Key::Enter, where);
    return WaitSettled(console, text, where);
}

// Logs in as root and opens entry of the customization menu; true once text
// shows and the screen has settled.
inline bool OpenEntry(ConsoleSession& console, std::string_view entry, std::string_view text,
                      std::source_location where = std::source_location::current()) {
    return LogIn(console, "root", kPassword, where) && OpenSelected(console, entry, text, where);
}

// The dialog line that starts with text, up to the dialog's right border,
// without trailing blanks; empty when no row holds text.
inline std::string DialogRow(ConsoleSession& console, std::string_view text) {
    auto at = console.find(text);
    if (!at) return {};
    std::string line;
    for (int col = at->col; col < console.screen().cols(); ++col) {
        const std::string cell = console.cell(col, at->row).text;
        if (cell == "\u2502") break;
        line += cell.empty() ? " " : cell;
    }
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

// F2, then a login that fails; true when the invalid-login message is up and
// settled.
inline bool LogInRefused(ConsoleSession& console, std::string_view user = "root",
                         std::string_view password = kPassword,
                         std::source_location where = std::source_location::current()) {
    return EnterLogin(console, user, password, where) &&
           WaitSettled(console, "Invalid login or password.", where);
}

// Every cell of the screen, row by row: its text, colours and attributes, for
// comparing whole screens.
inline std::vector<std::string> Grid(ConsoleSession& console) {
    std::vector<std::string> cells;
    const TeskTest::Screen& screen = console.screen();
    for (int row = 0; row < screen.rows(); ++row)
        for (int col = 0; col < screen.cols(); ++col) {
            const TeskTest::Cell cell = screen.cell(col, row);
            std::ostringstream out;
            out << "'" << cell.text << "' fg " << cell.fg << " bg " << cell.bg
                << (cell.reverse ? " reverse" : "") << (cell.bold ? " bold" : "")
                << (cell.underline ? " underline" : "") << (cell.blink ? " blink" : "");
            cells.push_back(out.str());
        }
    return cells;
}

// How two grids of the same screen differ: the number of cells and the first
// few of them, "(col,row) before / after"; empty when they are the same.
inline std::string GridDifference(const std::vector<std::string>& before,
                                  const std::vector<std::string>& after, int cols) {
    if (before.size() != after.size()) return "the screens differ in size";
    std::ostringstream out;
    int count = 0;
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (before[i] == after[i]) continue;
        if (++count <= 12)
            out << "(" << static_cast<int>(i) % cols << "," << static_cast<int>(i) / cols << ") "
                << before[i] << " / " << after[i] << "\n";
    }
    if (count == 0) return {};
    return std::to_string(count) + " cells differ, first:\n" + out.str();
}

// The audit records of the root, oldest first.
inline std::vector<Json> AuditRecords(const SimRoot& root) {
    std::vector<Json> records;
    for (const auto& line : root.logLines("/var/log/audit.log"))
        if (!line.empty()) records.push_back(Json::parse(line));
    return records;
}

// The audit records of one event.
inline std::vector<Json> AuditRecords(const SimRoot& root, std::string_view event) {
    std::vector<Json> found;
    for (auto& record : AuditRecords(root))
        if (record.value("event", "") == event) found.push_back(record);
    return found;
}

// Every log the console writes, joined: for checks that a secret never
// reached any of them.
inline std::string AllLogs(const SimRoot& root) {
    std::string all;
    for (const char* file : {"/var/log/syslog.log", "/var/log/audit.log", "/var/log/noxd.log"})
        all += root.tryReadFile(file).value_or("");
    return all;
}

}  // namespace SessionTest
