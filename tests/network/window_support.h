// Steps of the management network window's screen tests: opening the window
// from the menu, moving to a topic, reading the right pane, and opening a
// topic's dialog.
#pragma once

#include <chrono>
#include <source_location>
#include <string>
#include <thread>

#include "tests/session/session_support.h"

namespace NetworkTest {

using namespace SessionTest;

// The console's own terminal size.
constexpr int kCols = 80, kRows = 25;
constexpr int kPaneColumn = kCols / 2;

// In colour, so that greyed entries can be told apart.
inline SessionOptions Console() {
    return RemoteShell(kCols, kRows);
}

// The right half of the screen, row by row.
inline std::string Pane(ConsoleSession& console) {
    std::string text;
    for (int r = 0; r < kRows; ++r) {
        std::string row = console.row(r);
        text += (static_cast<int>(row.size()) > kPaneColumn ? row.substr(kPaneColumn) : "") + "\n";
    }
    return text;
}

// The pane's first line: the selected entry.
inline std::string Heading(ConsoleSession& console) {
    std::string row = console.row(1);
    if (static_cast<int>(row.size()) <= kPaneColumn + 2) return "";
    row = row.substr(kPaneColumn + 2);
    return row.substr(0, row.find_last_not_of(' ') + 1);
}

// Presses key until the pane's heading is heading (at most ten times).
inline bool Select(ConsoleSession& console, const std::string& heading,
                   std::string_view key = TeskTest::Key::Down,
                   std::source_location where = std::source_location::current()) {
    for (int i = 0; i < 10; ++i) {
        if (Heading(console) == heading) return true;
        const std::string before = Heading(console);
        console.key(key, where);
        const auto deadline =
            std::chrono::steady_clock::now() + TeskTest::Scaled(std::chrono::milliseconds(500));
        while (Heading(console) == before && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        console.waitForQuiet(std::chrono::milliseconds(100), TeskTest::DefaultTimeout(), where);
    }
    ADD_FAILURE_AT(where.file_name(), where.line()) << "no entry " << heading << "\n"
                                                    << console.dump();
    return false;
}

// Logs in and opens "Configure Management Network".
inline bool OpenWindow(ConsoleSession& console,
                       std::source_location where = std::source_location::current()) {
    if (!LogIn(console, "root", kPassword, where)) return false;
    if (!Select(console, "Configure Management Network", TeskTest::Key::Down, where)) return false;
    console.key(TeskTest::Key::Enter, where);
    return WaitSettled(console, "<Esc> Exit", where);
}

// Selects the topic and opens its dialog; waits for text of the dialog.
inline bool OpenDialog(ConsoleSession& console, const std::string& topic, std::string_view text,
                       std::source_location where = std::source_location::current()) {
    if (!Select(console, topic, TeskTest::Key::Down, where) &&
        !Select(console, topic, TeskTest::Key::Up, where))
        return false;
    console.key(TeskTest::Key::Enter, where);
    return WaitSettled(console, text, where);
}

// Closes the dialog showing text with key and waits for the window to
// settle.
inline bool Close(ConsoleSession& console, std::string_view key, std::string_view text,
                  std::source_location where = std::source_location::current()) {
    console.key(key, where);
    return console.waitForTextGone(text, TeskTest::DefaultTimeout(), where) &&
           WaitSettled(console, "<Esc> Exit", where);
}

// The row the text stands on, -1 when it is not on the screen.
inline int RowOf(ConsoleSession& console, std::string_view text) {
    auto at = console.find(text);
    return at ? at->row : -1;
}

}  // namespace NetworkTest
