// The simulated host tools: tesk-sim acts as each of them when it is started
// through a link named after the tool.
#pragma once

#include <string>
#include <vector>

namespace Sim {

struct ToolLink {
    std::string hostPath;  // "/bin/rux-cmd"
    std::string target;    // empty: a link to tesk-sim itself; otherwise this real file
};

// A tool's entry point: argv[0] is the name it was started by.
using ToolMain = int (*)(int argc, char** argv);

// Registers a tool under its host paths; every link made for it points at
// tesk-sim unless target is set. Use SIM_TOOL below at namespace scope.
struct ToolRegistration {
    ToolRegistration(std::vector<std::string> hostPaths, ToolMain main, std::string target = {});
};

#define SIM_TOOL_CONCAT2(a, b) a##b
#define SIM_TOOL_CONCAT(a, b) SIM_TOOL_CONCAT2(a, b)
// SIM_TOOL({"/bin/rux-cmd"}, &RuxCmdMain);
#define SIM_TOOL(...)                                                          \
    static const ::Sim::ToolRegistration SIM_TOOL_CONCAT(simToolRegistration_, \
                                                         __LINE__)(__VA_ARGS__)

// Every link `tesk-sim init` makes in a host root.
std::vector<ToolLink> ToolLinks();

// Runs the tool whose host path or last path component matches argv[0]'s last
// component, with the host root taken from TESK_ROOT. Returns its exit status,
// or -1 when no tool has that name.
int RunTool(int argc, char** argv);

}  // namespace Sim
