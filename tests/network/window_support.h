// Steps of the management network window's screen tests: opening the window
// from the menu, reading the right pane, and closing a topic's dialog.
#pragma once

#include <source_location>
#include <string>

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

// Logs in and opens "Configure Management Network".
inline bool OpenWindow(ConsoleSession& console,
                       std::source_location where = std::source_location::current()) {
    return OpenEntry(console, "Configure Management Network", "<Esc> Exit", where);
}

// Closes the dialog showing text with key and waits for the window to
// settle.
inline bool Close(ConsoleSession& console, std::string_view key, std::string_view text,
                  std::source_location where = std::source_location::current()) {
    console.key(key, where);
    return console.waitForTextGone(text, TeskTest::DefaultTimeout(), where) &&
           WaitSettled(console, "<Esc> Exit", where);
}

}  // namespace NetworkTest
