// Shared steps of the network restore screen tests: reaching the restore
// window, moving its selection, and reading the host's network back.
#pragma once

#include <algorithm>
#include <chrono>
#include <source_location>
#include <string>
#include <string_view>
#include <thread>

#include "tests/session/session_support.h"

namespace RecoveryTest {

using namespace SessionTest;

inline constexpr int kCols = 100, kRows = 30;
inline constexpr int kPaneColumn = kCols / 2;

// The right half of the screen, the selected row's description and footer,
// with every run of blanks and line ends as one blank (so that a phrase
// wrapped over two lines is found).
inline std::string Pane(ConsoleSession& console) {
    std::string text;
    for (int r = 0; r < kRows; ++r) {
        std::string row = console.row(r);
        if (static_cast<int>(row.size()) > kPaneColumn) text += row.substr(kPaneColumn);
        text += " ";
    }
    std::string words;
    for (char c : text)
        if (c != ' ' || (!words.empty() && words.back() != ' ')) words += c;
    return words;
}

inline std::string PaneFooter(ConsoleSession& console) {
    std::string row = console.row(kRows - 2);
    return static_cast<int>(row.size()) > kPaneColumn ? row.substr(kPaneColumn) : "";
}

// The colour of the row that shows text (greyed rows differ).
inline TeskTest::Colour RowColour(ConsoleSession& console, std::string_view text) {
    const auto at = console.find(text);
    EXPECT_TRUE(at) << text;
    return at ? console.cell(at->col, at->row).fg : TeskTest::Colour{};
}

// Logs in on a console of the root and opens "Network Restore Options".
inline bool OpenRestoreWindow(ConsoleSession& console,
                              std::source_location where = std::source_location::current()) {
    return OpenEntry(console, "Network Restore Options", "Create Standard Switch", where) &&
           console.waitFor(
               [&] { return PaneFooter(console).find("<Enter> Change") != std::string::npos; },
               "the window's footer", TeskTest::DefaultTimeout(), where) &&
           console.waitForQuiet(std::chrono::milliseconds(300), TeskTest::DefaultTimeout(), where);
}

// Presses key to close the dialog on top and waits for the window: after
// every dialog it shows its own footer until the selection moves.
inline bool BackToWindow(ConsoleSession& console, std::string_view key = Key::Enter,
                         std::source_location where = std::source_location::current()) {
    console.key(key, where);
    const bool back = console.waitFor(
        [&] {
            return PaneFooter(console).find("<Enter> Change") != std::string::npos &&
                   console.text().find("<Esc> Cancel") == std::string::npos &&
                   console.text().find("<Enter> OK") == std::string::npos;
        },
        "the restore window", TeskTest::DefaultTimeout(), where);
    return back &&
           console.waitForQuiet(std::chrono::milliseconds(400), TeskTest::DefaultTimeout(), where);
}

// Presses Down n times, each time waiting for the pane to change.
inline void Down(ConsoleSession& console, int n = 1,
                 std::source_location where = std::source_location::current()) {
    for (int i = 0; i < n; ++i) {
        const std::string before = Pane(console);
        console.key(Key::Down, where);
        console.waitFor([&] { return Pane(console) != before; }, "the selection to move",
                        TeskTest::DefaultTimeout(), where);
        console.waitForQuiet(std::chrono::milliseconds(200), TeskTest::DefaultTimeout(), where);
    }
}

// Types into a fresh field and waits for the text to be drawn.
inline void TypeSettled(ConsoleSession& console, std::string_view text,
                        std::source_location where = std::source_location::current()) {
    console.type(text, where);
    // A long value scrolls in its field: its end is what shows.
    if (!text.empty())
        console.waitForText(text.substr(text.size() > 12 ? text.size() - 12 : 0),
                            TeskTest::DefaultTimeout(), where);
    console.waitForQuiet(std::chrono::milliseconds(200), TeskTest::DefaultTimeout(), where);
}

// The position of the first syslog line holding text; the number of lines
// when none does.
inline std::size_t LogLineOf(const SimRoot& root, std::string_view text) {
    const auto lines = root.logLines();
    return std::find_if(
               lines.begin(), lines.end(),
               [&](const std::string& line) { return line.find(text) != std::string::npos; }) -
           lines.begin();
}

// A switch of the state by name, or null.
inline const Json* FindNamed(const Json& list, std::string_view name) {
    if (!list.is_array()) return nullptr;
    for (const auto& entry : list)
        if (entry.is_object() && entry.value("name", "") == name) return &entry;
    return nullptr;
}

}  // namespace RecoveryTest
