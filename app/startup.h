// Start-up of the console and the guards it runs through.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace Tesk {

class Window;

// The virtual-terminal argument: the number when it is in 1..63, none (and
// "Invalid VT specified for TESK: %s" logged) otherwise.
std::optional<int> ParseVirtualTerminal(const char* argument);

// Picks TERM (and TERMINFO) from the environment; returns the local-console
// flag. onConsole: descriptor 1 is a Linux virtual console.
bool ChooseTerminalType(bool onConsole);

// The pid-file guard on "/var/run/tesk.pid": writes this process's pid unless
// the file names another running console (logged, the file left alone).
// True when the file now names this process.
bool GuardPidFile();
// Removes the pid file when it still names this process (at the end).
void ReleasePidFile();

// What start-up found out that the screens need.
struct StartFacts {
    // On the host's own console (or a local xterm) rather than a remote shell.
    bool localConsole = false;
};

// The whole program: the host backend chosen and installed (status 1 when
// none can be: app/backend_choice.h), start-up in its fixed order, the
// top-level window made by makeTopWindow and run until it returns or the
// console is asked to end (ExitRequest), then the terminal put back. Returns
// the exit status.
int RunConsole(int argc, char** argv,
               const std::function<std::unique_ptr<Window>(const StartFacts&)>& makeTopWindow);

}  // namespace Tesk
