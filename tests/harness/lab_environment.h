// What the lab (scripts/lab.sh) gives a console started by a test inside it:
// the lab's host root, the Linux backend, the lab's system bus and libvirt,
// and the PAM wrapper that takes the lab's logins; and what the lab tests read
// back (its variables, whole files, the host's log).
#pragma once

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

#include "tests/harness/console_session.h"
#include "tests/harness/keys.h"

namespace TeskTest {

// The variable's value; empty when it is not set (outside a lab).
inline std::string Env(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// The file's text; empty when it cannot be read.
inline std::string ReadFile(const std::string& path) {
    std::stringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

// True in a lab (scripts/lab.sh) whose console runs the Linux backend.
inline bool InLinuxLab() {
    return !Env("TESK_ROOT").empty() && Env("TESK_BACKEND") == "linux";
}

// Moves the menu's selection down to the entry whose title the pane shows,
// waiting for each move as long as it takes: the lab's host answers the pane's
// questions slowly on a busy machine.
inline bool LabSelect(ConsoleSession& console, std::string_view title) {
    console.waitForQuiet();
    for (int i = 0; i < 20; ++i) {
        const std::string before = console.row(1);
        if (before.find(title, static_cast<std::size_t>(console.screen().cols() / 2)) !=
            std::string::npos)
            return console.waitForQuiet();
        console.key(Key::Down);
        if (!console.waitFor([&] { return console.row(1) != before; }, "the selection to move"))
            return false;
    }
    return false;
}

// The lab host's log.
inline std::string LabLog() {
    return ReadFile(Env("TESK_ROOT") + "/var/log/syslog.log");
}

// Hands the lab's variables that are set on to the console of options, and
// preloads the lab's pam_wrapper into the console (only there: the lab's
// other processes run without it).
inline void PassLabEnvironment(SessionOptions& options) {
    for (const char* name : {"TESK_ROOT", "TESK_BACKEND", "DBUS_SYSTEM_BUS_ADDRESS",
                             "TESK_LIBVIRT_URI", "PAM_WRAPPER", "PAM_WRAPPER_SERVICE_DIR",
                             "PAM_WRAPPER_DISABLE_DEEPBIND", "UID_WRAPPER_DISABLE_DEEPBIND"})
        if (const char* value = std::getenv(name)) options.env.emplace_back(name, value);
    if (const char* preload = std::getenv("LAB_PAM_PRELOAD"))
        options.env.emplace_back("LD_PRELOAD", preload);
}

}  // namespace TeskTest
