// The consoles of a root, found through its pid file and through /proc.
#include "sim/tools/consoles.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/pid_text.h"

namespace Sim::Tools {

namespace fs = std::filesystem;

namespace {

std::string ReadText(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// Whether the process runs the console program: its executable is named
// "tesk" (" (deleted)" when the file was replaced while it runs).
bool RunsConsole(pid_t pid) {
    std::error_code ec;
    const fs::path exe = fs::read_symlink("/proc/" + std::to_string(pid) + "/exe", ec);
    if (ec) return false;
    const std::string name = exe.filename().string();
    return name == "tesk" || name == "tesk (deleted)";
}

// The root the process runs on: its TESK_ROOT (relative to its working
// folder), none when it has none.
std::optional<fs::path> RootOf(pid_t pid) {
    const fs::path proc = "/proc/" + std::to_string(pid);
    const std::string environ = ReadText(proc / "environ");
    std::istringstream entries(environ);
    for (std::string entry; std::getline(entries, entry, '\0');) {
        if (!entry.starts_with("TESK_ROOT=")) continue;
        fs::path root = entry.substr(10);
        if (root.empty()) return std::nullopt;
        std::error_code ec;
        if (root.is_relative()) root = fs::read_symlink(proc / "cwd", ec) / root;
        return root;
    }
    return std::nullopt;
}

bool SameFolder(const fs::path& a, const fs::path& b) {
    std::error_code ec;
    return fs::equivalent(a, b, ec);
}

}  // namespace

std::vector<pid_t> RunningConsoles(const std::string& root) {
    std::vector<pid_t> consoles;
    const pid_t self = ::getpid();
    if (auto named = Tesk::Platform::ParsePidText(ReadText(fs::path(root) / "var/run/tesk.pid"));
        named && *named != self && RunsConsole(*named)) {
        const auto itsRoot = RootOf(*named);
        if (!itsRoot || SameFolder(*itsRoot, root)) consoles.push_back(*named);
    }
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator("/proc", ec)) {
        const auto pid = Tesk::Platform::ParsePidText(entry.path().filename().string());
        if (!pid || *pid == self ||
            std::find(consoles.begin(), consoles.end(), *pid) != consoles.end())
            continue;
        if (!RunsConsole(*pid)) continue;
        const auto itsRoot = RootOf(*pid);
        if (itsRoot && SameFolder(*itsRoot, root)) consoles.push_back(*pid);
    }
    return consoles;
}

int SignalConsoles(const std::string& root, int sig) {
    int told = 0;
    for (pid_t pid : RunningConsoles(root))
        if (::kill(pid, sig) == 0) ++told;
    return told;
}

}  // namespace Sim::Tools
