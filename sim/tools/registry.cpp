#include <filesystem>
#include <string>

#include "sim/tools.h"

namespace Sim {

namespace {

struct Tool {
    std::string hostPath;
    ToolMain main;
    std::string target;
};

std::vector<Tool>& Registry() {
    static std::vector<Tool> tools;
    return tools;
}

std::string LastComponent(const std::string& path) {
    return std::filesystem::path(path).filename().string();
}

// The pager is the real one; the root only links to it.
SIM_TOOL({"/bin/less"}, nullptr, "/usr/bin/less");

}  // namespace

ToolRegistration::ToolRegistration(std::vector<std::string> hostPaths, ToolMain main,
                                   std::string target) {
    for (auto& path : hostPaths) Registry().push_back({std::move(path), main, target});
}

std::vector<ToolLink> ToolLinks() {
    std::vector<ToolLink> links;
    for (const auto& tool : Registry()) links.push_back({tool.hostPath, tool.target});
    return links;
}

int RunTool(int argc, char** argv) {
    if (argc < 1) return -1;
    const std::string name = LastComponent(argv[0]);
    for (const auto& tool : Registry())
        if (tool.main && LastComponent(tool.hostPath) == name) return tool.main(argc, argv);
    return -1;
}

}  // namespace Sim
