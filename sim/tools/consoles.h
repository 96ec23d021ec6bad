// Finding the consoles that run on a simulated host root, for the tools that
// tell them something (the power commands, smart-card changes), as init and
// the card service would on a real host.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace Sim::Tools {

// The consoles running on the root (a real path): the process
// <root>/var/run/tesk.pid names, when it runs the console program ("tesk")
// and does not run on another root; and every other process that runs the
// console program on this root (its TESK_ROOT names it), such as a second
// console that started while another held the pid file. Never this process.
std::vector<pid_t> RunningConsoles(const std::string& root);

// Sends sig to every console RunningConsoles finds; the number told.
int SignalConsoles(const std::string& root, int sig);

}  // namespace Sim::Tools
