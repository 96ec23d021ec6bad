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

}  // namespace AdminTest
