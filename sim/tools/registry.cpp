#include <stdlib.h>
#include <sys/auxv.h>

#include <filesystem>
#include <string>

#include "platform/hostroot.h"
#include "sim/tools.h"
#include "sim/tools/toolkit.h"

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

namespace {

// A tool gets no environment from the console but "PYTHONHOME=/", so it finds
// its host root from the path it was executed by (<root>/bin/rux-cmd); TESK_ROOT
// serves when that path is not inside a root. The root is exported again for
// the tools and shells this one starts.
void FindHostRoot() {
    const char* executed = reinterpret_cast<const char*>(::getauxval(AT_EXECFN));
    std::vector<std::string> hostPaths;
    for (const auto& tool : Registry()) hostPaths.push_back(tool.hostPath);
    std::string root = Tools::RootFromExecutedPath(executed ? executed : "", hostPaths);
    if (!root.empty()) ::setenv("TESK_ROOT", root.c_str(), 1);
    Tesk::Platform::SetHostRootForTesting("");
}

}  // namespace

int RunTool(int argc, char** argv) {
    if (argc < 1) return -1;
    const std::string name = LastComponent(argv[0]);
    for (const auto& tool : Registry()) {
        if (!tool.main || LastComponent(tool.hostPath) != name) continue;
        FindHostRoot();
        try {
            // Any tool can be told to fail, hang or die by "/faults/<name>".
            if (auto status = Tools::ApplyFault(name)) return *status;
            return tool.main(argc, argv);
        } catch (const std::exception& e) {
            return Tools::Fail(name, e.what());
        }
    }
    return -1;
}

}  // namespace Sim
