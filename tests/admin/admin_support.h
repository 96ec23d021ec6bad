// Shared steps of the administration screen tests: reaching a menu entry and
// opening its dialog, reading where the caret stands.
#pragma once

#include <chrono>
#include <source_location>
#include <string>
#include <thread>

#include "tests/session/session_support.h"

namespace AdminTest {

using namespace SessionTest;

inline constexpr int kCols = 100, kRows = 30;
inline constexpr int kPaneColumn = kCols / 2;

// The right pane's heading: the selected entry's name.
inline std::string Heading(ConsoleSession& console) {
    const std::string row = console.row(1);
    return static_cast<int>(row.size()) > kPaneColumn + 2 ? row.substr(kPaneColumn + 2) : "";
}

// Moves down the menu until entry is selected; false when the menu ends first.
inline bool SelectEntry(ConsoleSession& console, const std::string& entry) {
    for (int moves = 0; moves < 30 && Heading(console) != entry; ++moves) {
        const std::string before = Heading(console);
        console.key(Key::Down);
        if (!console.waitFor([&] { return Heading(console) != before; }, "the selection moves",
                             TeskTest::Scaled(std::chrono::milliseconds(1500))))
            return false;
        console.waitForQuiet(std::chrono::milliseconds(100));
    }
    return Heading(console) == entry;
}

// Logs in, selects entry and opens it with <Enter>; true when text shows.
inline bool OpenEntry(ConsoleSession& console, const std::string& entry, std::string_view text,
                      std::source_location where = std::source_location::current()) {
    if (!LogIn(console, "root", kPassword, where)) return false;
    if (!SelectEntry(console, entry)) {
        ADD_FAILURE_AT(where.file_name(), where.line()) << "no entry " << entry;
        return false;
    }
    console.key(Key::Enter, where);
    return WaitSettled(console, text, where);
}

// The row the caret stands on, or -1 when it is hidden.
inline int CaretRow(ConsoleSession& console) {
    const auto& screen = console.screen();
    return screen.cursorVisible() ? screen.cursor().row : -1;
}

// The row of a label on the screen, or -1.
inline int RowOf(ConsoleSession& console, std::string_view label) {
    const auto at = console.find(label);
    return at ? at->row : -1;
}

// Waits until the caret stands on the row of label (the focused field).
inline bool WaitCaretOn(ConsoleSession& console, std::string_view label,
                        std::source_location where = std::source_location::current()) {
    const bool moved = console.waitFor(
        [&] { return RowOf(console, label) >= 0 && CaretRow(console) == RowOf(console, label); },
        std::string("the caret on ") + std::string(label), TeskTest::DefaultTimeout(), where);
    return moved && console.waitForQuiet(std::chrono::milliseconds(200));
}

}  // namespace AdminTest
