#include "linuxhost/shell_timeouts.h"

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>

#include "linuxhost/options.h"
#include "linuxhost/systemd_units.h"
#include "platform/hostroot.h"
#include "platform/regular_file.h"
#include "platform/syslog.h"
#include "store/replace_file.h"

namespace LinuxHost {
namespace {

using HostCtl::Services::ShellTimeout;

std::string DropInOf(const std::string& unit) {
    return "/etc/systemd/system/" + unit + ".d/" + kAvailabilityDropIn;
}

// The units the availability applies to.
std::string UnitOption(const char* key) {
    return Options::Text(key).value_or("");
}

// The number after "key=" at a line's start in the file; 0 when the file is
// missing, none when it has no such number.
std::optional<long> ReadNumber(const std::string& file, const std::string& key) {
    const auto text = Tesk::Platform::ReadRegularFile(Tesk::Platform::HostPath(file));
    if (!text) return 0L;
    const std::string prefix = key + "=";
    std::istringstream lines(*text);
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind(prefix, 0) != 0) continue;
        char* end = nullptr;
        const long value = std::strtol(line.c_str() + prefix.size(), &end, 10);
        if (end != line.c_str() + prefix.size() && *end == '\0' && value >= 0) return value;
        break;
    }
    Tesk::Platform::Log(LOG_ERR, "%s has no number of seconds as %s", file.c_str(), key.c_str());
    return std::nullopt;
}

// Replaces (or, for empty text, removes) file under the host root.
bool Write(const std::string& file, const std::string& text) {
    const std::filesystem::path path = Tesk::Platform::HostPath(file);
    try {
        if (text.empty()) {
            std::filesystem::remove(path);
        } else {
            std::filesystem::create_directories(path.parent_path());
            Sim::ReplaceFile(path.string(), text, 0644);
        }
        return true;
    } catch (const std::exception& e) {
        Tesk::Platform::Log(LOG_ERR, "Writing %s failed: %s", file.c_str(), e.what());
        return false;
    }
}

}  // namespace

std::optional<long> ReadShellTimeout(ShellTimeout timeout) {
    if (timeout == ShellTimeout::Idle) return ReadNumber(kIdleTimeoutFile, "TMOUT");
    return ReadNumber(DropInOf(UnitOption("units.ssh")), "RuntimeMaxSec");
}

bool WriteShellTimeout(ShellTimeout timeout, unsigned long long seconds) {
    const std::string value = std::to_string(seconds);
    if (timeout == ShellTimeout::Idle)
        return Write(kIdleTimeoutFile, seconds == 0
                                           ? ""
                                           : "# Written by tesk: idle shells end.\nTMOUT=" + value +
                                                 "\nreadonly TMOUT\nexport TMOUT\n");
    // Ended by its time limit, the unit must not be started again at once.
    const std::string dropIn =
        seconds == 0 ? ""
                     : "# Written by tesk: the service stops after this time.\n[Service]\n"
                       "RuntimeMaxSec=" +
                           value + "\nRestart=no\n";
    bool written = true;
    for (const char* key : {"units.ssh", "units.shell"})
        written = Write(DropInOf(UnitOption(key)), dropIn) && written;
    Systemd().Reload();
    return written;
}

}  // namespace LinuxHost
