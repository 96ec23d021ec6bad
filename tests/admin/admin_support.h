// Steps the administration screen tests share: the way in through <F12> and
// the customization menu, and waiting for the host to show an effect.
#pragma once

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

}  // namespace AdminTest
