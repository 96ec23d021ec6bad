// "/bin/sh" in a simulated root: the real shell, confined to the root.
//   sh -c LINE [ARG...]   LINE with its absolute paths mapped into the root
//   sh SCRIPT [ARG...]    SCRIPT from the root; a simulated tool is run directly
// The shell searches the root's own tool folders first and never the
// machine's sbin folders, so "reboot" reaches the simulated tool. bash (in
// its POSIX mode) is preferred because the host's shell knows `let`.
#include "sim/tools/shell.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <vector>

#include "platform/hostroot.h"
#include "sim/tools.h"
#include "sim/tools/toolkit.h"

extern char** environ;

namespace Sim::Tools {
namespace {

namespace fs = std::filesystem;

bool Exists(const std::string& path) {
    struct stat st;
    return ::lstat(path.c_str(), &st) == 0;
}

std::string MapPath(const std::string& word) {
    std::string mapped = Tesk::Platform::HostPath(word);
    if (mapped == word) return word;  // a device, or no simulated root
    if (Exists(mapped)) return mapped;
    std::string parent = fs::path(word).parent_path().string();
    if (parent != "/" && !parent.empty() && Exists(Tesk::Platform::HostPath(parent))) return mapped;
    return word;
}

bool StartsWord(char previous) {
    return std::strchr(" \t\n;&|()<>`=\"", previous) != nullptr;
}

bool EndsWord(char c) {
    return std::strchr(" \t\n;&|()<>`\"'$", c) != nullptr;
}

const char* RealShell() {
    return ::access("/bin/bash", X_OK) == 0 ? "/bin/bash" : "/bin/sh";
}

// The environment the shell runs with: ours, with the root's folders first
// in the search path.
std::vector<std::string> ShellEnvironment() {
    std::vector<std::string> env;
    for (char** e = environ; e && *e; ++e)
        if (std::strncmp(*e, "PATH=", 5) != 0) env.emplace_back(*e);
    const std::string bin = Tesk::Platform::HostPath("/bin");
    const std::string sbin = Tesk::Platform::HostPath("/sbin");
    env.push_back("PATH=" + bin + ":" + sbin + ":/usr/local/bin:/usr/bin:/bin");
    return env;
}

[[noreturn]] void Exec(const std::string& path, const std::vector<std::string>& args) {
    std::vector<char*> argv;
    for (const auto& a : args) argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    auto envStrings = ShellEnvironment();
    std::vector<char*> envp;
    for (const auto& e : envStrings) envp.push_back(const_cast<char*>(e.c_str()));
    envp.push_back(nullptr);
    ::execve(path.c_str(), argv.data(), envp.data());
    Fail("sh", "cannot run " + path + ": " + std::strerror(errno));
    ::_exit(127);
}

bool IsSimulatedTool(const std::string& path) {
    std::error_code ec;
    return fs::equivalent(path, "/proc/self/exe", ec);
}

int ShellMain(int argc, char** argv) {
    auto args = Arguments(argc, argv);
    std::vector<std::string> run = {"sh"};
    if (!args.empty() && args[0] == "-c" && args.size() >= 2) {
        run.push_back("-c");
        run.push_back(MapHostPaths(args[1]));
        run.insert(run.end(), args.begin() + 2, args.end());
    } else if (!args.empty() && !args[0].starts_with("-")) {
        std::string script = MapPath(args[0]);
        if (IsSimulatedTool(script)) {
            std::vector<std::string> tool = {script};
            tool.insert(tool.end(), args.begin() + 1, args.end());
            Exec(script, tool);
        }
        run.push_back(script);
        run.insert(run.end(), args.begin() + 1, args.end());
    } else {
        run.insert(run.end(), args.begin(), args.end());
    }
    Exec(RealShell(), run);
}

}  // namespace

std::string MapHostPaths(std::string_view line) {
    std::string out;
    enum { Plain, Single, Double } quote = Plain;
    for (size_t i = 0; i < line.size(); ++i) {
        char c = line[i];
        if (quote == Single) {
            out += c;
            if (c == '\'') quote = Plain;
            continue;
        }
        if (c == '\\') {
            out += c;
            if (i + 1 < line.size()) out += line[++i];
            continue;
        }
        if (c == '\'' && quote == Plain) {
            quote = Single;
            out += c;
            continue;
        }
        if (c == '"') {
            quote = quote == Double ? Plain : Double;
            out += c;
            continue;
        }
        if (c == '/' && (i == 0 || StartsWord(line[i - 1]))) {
            size_t end = i;
            while (end < line.size() && !EndsWord(line[end])) ++end;
            out += MapPath(std::string(line.substr(i, end - i)));
            i = end - 1;
            continue;
        }
        out += c;
    }
    return out;
}

SIM_TOOL({"/bin/sh"}, &ShellMain);

}  // namespace Sim::Tools
