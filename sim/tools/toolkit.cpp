#include "sim/tools/toolkit.h"

#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iostream>

#include "platform/hostroot.h"
#include "sim/tools/consoles.h"

namespace Sim::Tools {

namespace fs = std::filesystem;

std::string ToolName(const char* argv0) {
    return argv0 ? fs::path(argv0).filename().string() : std::string();
}

std::string RootFromExecutedPath(const std::string& executedPath,
                                 const std::vector<std::string>& hostPaths) {
    if (executedPath.empty()) return {};
    std::string path = executedPath;
    if (path.front() != '/') {
        std::error_code ec;
        path = (fs::current_path(ec) / path).lexically_normal().string();
    } else {
        path = fs::path(path).lexically_normal().string();
    }
    for (const auto& hostPath : hostPaths) {
        if (path.size() <= hostPath.size() || !path.ends_with(hostPath)) continue;
        return path.substr(0, path.size() - hostPath.size());
    }
    return {};
}

std::optional<int> ApplyFault(const std::string& name) {
    auto fault = Sim::Fault(name);
    if (!fault) return std::nullopt;
    if (!fault->is_object()) return 1;
    if (auto it = fault->find("output"); it != fault->end() && it->is_string())
        std::cout << it->get<std::string>() << std::flush;
    if (auto it = fault->find("error"); it != fault->end() && it->is_string())
        std::cerr << it->get<std::string>() << std::flush;
    if (fault->value("hang", false)) {
        // Sleep until killed; go with the parent should it be killed first
        // (a shell between the console and this tool).
        pid_t parent = ::getppid();
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() != parent) ::_exit(1);
        for (;;) ::pause();
    }
    if (auto it = fault->find("signal"); it != fault->end() && it->is_number_integer()) {
        int sig = it->get<int>();
        ::signal(sig, SIG_DFL);
        ::raise(sig);
    }
    auto it = fault->find("exitStatus");
    return it != fault->end() && it->is_number_integer() ? it->get<int>() : 1;
}

int Fail(const std::string& tool, const std::string& message, int status) {
    std::cerr << tool << ": " << message << "\n" << std::flush;
    return status;
}

std::vector<std::string> Arguments(int argc, char** argv) {
    std::vector<std::string> args;
    for (int i = 1; i < argc; ++i) args.emplace_back(argv[i]);
    return args;
}

std::optional<std::string> OptionValue(const std::vector<std::string>& args,
                                       const std::string& option) {
    for (size_t i = 0; i + 1 < args.size(); ++i)
        if (args[i] == option) return args[i + 1];
    return std::nullopt;
}

Json& Section(Json& state, const std::string& key) {
    Json& section = state[key];
    if (!section.is_object()) section = Json::object();
    return section;
}

bool SignalConsole() {
    return SignalConsoles(Tesk::Platform::HostRoot(), SIGTERM) > 0;
}

}  // namespace Sim::Tools
