// What the lab screen tests of the management network share: the console in
// the lab's environment, the host as installed, waits for the screen and the
// kernel, the login and the menu.
#pragma once

#include <string>
#include <string_view>

#include "tests/harness/console_session.h"
#include "tests/harness/lab_environment.h"
#include "tests/session/session_support.h"

namespace LabNet {

using TeskTest::ConsoleSession;
using TeskTest::Env;
using TeskTest::LabSelect;
using TeskTest::ReadFile;

// True in the lab (scripts/lab.sh) with the Linux backend.
bool InLab();
// What the lab gives the console: its root, backend, bus and logins.
TeskTest::SessionOptions LabSession();
// The command's standard output.
std::string Run(const std::string& command);
// The management bridge's networkd file in the lab's root.
std::string ManagementFile();
// The host as installed: the management bridge over eth0 on DHCP.
void InstallNetwork();
// Waits until br0 has address in the kernel (has none when present is false).
bool KernelHas(ConsoleSession& console, const std::string& address, bool present = true);
// Waits for text and for the screen to settle: a dialog drops the keys typed
// before it took the focus.
bool Settled(ConsoleSession& console, std::string_view text,
             ConsoleSession::Timeout timeout = TeskTest::DefaultTimeout());
// F2 and the demo login, up to the menu.
bool LogIn(ConsoleSession& console);
// Runs the network test with its proposed addresses; the screen's text at the end.
std::string RunNetworkTest(ConsoleSession& console);

}  // namespace LabNet
