// Steps the administration screen tests share: the way in through <F12> and
// the customization menu, opening an entry's dialog, where the caret stands,
// and waiting for the host to show an effect.
#pragma once

#include <chrono>
#include <source_location>
#include <string>
#include <thread>

#include "tests/session/session_support.h"

namespace AdminTest {

using namespace SessionTest;

// <F12> on the welcome screen and a successful login: the shut down dialog.
inline bool OpenShutdownDialog(ConsoleSession& console) {
    if (!WaitWelcome(console)) return false;
    console.key(FKey(12));
    if (!WaitSettled(console, "Login Name:")) return false;
    EnterCredentials(console, "root", kPassword);
    return WaitSettled(console, "Forcefully terminate");
}

// The heading of the menu's right pane (the selected entry), at 100 columns.
inline std::string MenuHeading(ConsoleSession& console) {
    const std::string row = console.row(1);
    return row.size() > 52 ? row.substr(52) : "";
}

// Presses Down; true when another entry got selected within a moment (false
// at the end of the menu).
inline bool MenuDown(ConsoleSession& console) {
    const std::string before = MenuHeading(console);
    console.key(Key::Down);
    const auto deadline =
        std::chrono::steady_clock::now() + TeskTest::Scaled(std::chrono::milliseconds(800));
    while (std::chrono::steady_clock::now() < deadline) {
        if (MenuHeading(console) != before) return console.waitForQuiet();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

// Moves down the menu until entry is selected; false at the end of the menu.
inline bool SelectMenuEntry(ConsoleSession& console, const std::string& entry) {
    while (MenuHeading(console).rfind(entry, 0) != 0)
        if (!MenuDown(console)) return false;
    return true;
}

// A state value as a text ("" when missing), for waits on the host.
inline std::string StateText(const SimRoot& root, const std::string& pointer) {
    auto value = root.stateValue(pointer);
    if (!value) return "";
    return value->is_string() ? value->get<std::string>() : value->dump();
}

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
