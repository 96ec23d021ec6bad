// Steps the administration screen tests share: the way in through <F12>,
// where the caret stands, and the host's state as text.
#pragma once

#include <source_location>
#include <string>

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

// A state value as a text ("" when missing), for waits on the host.
inline std::string StateText(const SimRoot& root, const std::string& pointer) {
    auto value = root.stateValue(pointer);
    if (!value) return "";
    return value->is_string() ? value->get<std::string>() : value->dump();
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
    return moved && console.waitForQuiet(std::chrono::milliseconds(200));
}

}  // namespace AdminTest
