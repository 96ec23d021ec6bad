// Shared pieces of the simulated host tools.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "store/state.h"

namespace Sim::Tools {

// The name a tool was started by: the last path component of argv[0].
std::string ToolName(const char* argv0);

// The host root a tool was started in, from the path it was executed by
// (<root>/bin/rux-cmd): the part before the first registered host path that
// ends the executed path. Empty when none matches (a tool started by a bare
// name or a path outside any root).
std::string RootFromExecutedPath(const std::string& executedPath,
                                 const std::vector<std::string>& hostPaths);

// Acts out the fault "/faults/<name>" when the state sets one: writes its
// "output" to standard output and its "error" to standard error, then hangs
// until killed ("hang": true), raises "signal", or gives "exitStatus"
// (default 1) as the result. None when no fault is set.
std::optional<int> ApplyFault(const std::string& name);

// "<tool>: <message>" on standard error; returns status.
int Fail(const std::string& tool, const std::string& message, int status = 1);

// The arguments after argv[0].
std::vector<std::string> Arguments(int argc, char** argv);

// The value after `option` ("-n" "hagentd"), or none.
std::optional<std::string> OptionValue(const std::vector<std::string>& args,
                                       const std::string& option);

// The object `key` of the state, made an object when missing.
Json& Section(Json& state, const std::string& key);

// Tells the consoles that the host goes down, as init would: SIGTERM to every
// console running on the root (see RunningConsoles in sim/tools/consoles.h).
// Returns false when there was no console to tell.
bool SignalConsole();

}  // namespace Sim::Tools
