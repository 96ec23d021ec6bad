// Start-up of the console and the guards it runs through.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

struct termios;

namespace Tesk {

class Window;

// The virtual-terminal argument: the number when it is in 1..63, none (and
// "Invalid VT specified for TESK: %s" logged) otherwise.
std::optional<int> ParseVirtualTerminal(const char* argument);

// Picks TERM (and TERMINFO) from the environment; returns the local-console
// flag. onConsole: descriptor 1 is a Linux virtual console.
bool ChooseTerminalType(bool onConsole);

// The pid-file guard on "/var/run/tesk.pid".
void GuardPidFile();

// The terminal settings of descriptor 1 as they were at start-up.
const termios& StartupTerminalSettings();

// Activates the virtual terminal through "/dev/console".
void SwitchVirtualTerminal(int vt);

// The whole program: start-up in its fixed order, the top-level window made by
// makeTopWindow and run until it returns, then the terminal put back.
int RunConsole(int argc, char** argv,
               const std::function<std::unique_ptr<Window>()>& makeTopWindow);

}  // namespace Tesk
