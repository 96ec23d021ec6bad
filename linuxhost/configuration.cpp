#include "linuxhost/configuration.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include "linuxhost/host_files.h"
#include "linuxhost/options.h"
#include "linuxhost/shell_timeouts.h"
#include "linuxhost/system_info.h"
#include "platform/hostroot.h"
#include "platform/syslog.h"
#include "store/replace_file.h"

namespace LinuxHost {
namespace {

using Tesk::Platform::HostPath;
using Tesk::Platform::Log;

constexpr const char* kNetworkDirectories[] = {"/etc/systemd/network", "/run/systemd/network"};
constexpr const char kUnitDirectory[] = "/etc/systemd/system";
constexpr const char* kConsoleFiles[] = {Options::kOptionsFile, kWelcomeFile, kIdleTimeoutFile};

bool Exists(const std::string& hostPath) {
    std::error_code error;
    return std::filesystem::is_regular_file(HostPath(hostPath), error);
}

// A backup's name for a host path: "/etc/tesk/linux-host.conf" is
// "etc_tesk_linux-host.conf".
std::string BackupName(std::string path) {
    path.erase(0, 1);
    std::replace(path.begin(), path.end(), '/', '_');
    return path;
}

}  // namespace

bool IsConsoleNetworkFile(std::string_view name) {
    const auto dash = name.find('-');
    if (dash == std::string_view::npos) return false;
    const auto number = name.substr(0, dash);
    if (number.empty() || number.find_first_not_of("0123456789") != std::string_view::npos)
        return false;
    const auto rest = name.substr(dash + 1);
    if (rest.rfind("tesk-", 0) != 0) return false;
    for (std::string_view suffix : {".network", ".netdev", ".link"})
        if (rest.size() > suffix.size() &&
            rest.compare(rest.size() - suffix.size(), suffix.size(), suffix) == 0)
            return true;
    return false;
}

std::vector<std::string> ConsoleWrittenFiles() {
    std::vector<std::string> files;
    for (const char* file : kConsoleFiles)
        if (Exists(file)) files.emplace_back(file);
    for (const char* directory : kNetworkDirectories) {
        std::error_code error;
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(HostPath(directory), error)) {
            const std::string name = entry.path().filename().string();
            if (IsConsoleNetworkFile(name) && Exists(std::string(directory) + "/" + name))
                found.push_back(std::string(directory) + "/" + name);
        }
        std::sort(found.begin(), found.end());
        files.insert(files.end(), found.begin(), found.end());
    }
    std::error_code error;
    std::vector<std::string> dropIns;
    for (const auto& entry : std::filesystem::directory_iterator(HostPath(kUnitDirectory), error)) {
        const std::string dropIn = std::string(kUnitDirectory) + "/" +
                                   entry.path().filename().string() + "/" + kAvailabilityDropIn;
        if (Exists(dropIn)) dropIns.push_back(dropIn);
    }
    std::sort(dropIns.begin(), dropIns.end());
    files.insert(files.end(), dropIns.begin(), dropIns.end());
    return files;
}

bool HostConfigurationImpl::Backup() const {
    const std::string directory = HostPath(kBackupDirectory);
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    if (error) {
        Log(LOG_ERR, "Backing up the configuration failed: %s: %s", kBackupDirectory,
            error.message().c_str());
        return false;
    }
    // The last backup's files that are no longer written go with it.
    for (const auto& entry : std::filesystem::directory_iterator(directory, error))
        std::filesystem::remove(entry.path(), error);
    int saved = 0;
    for (const auto& file : ConsoleWrittenFiles()) {
        const auto text = ReadHostFile(file);
        try {
            if (!text) throw std::runtime_error("cannot be read");
            Sim::ReplaceFile(directory + "/" + BackupName(file), *text, 0600);
            ++saved;
        } catch (const std::runtime_error& failure) {
            Log(LOG_ERR, "Backing up %s failed: %s", file.c_str(), failure.what());
            return false;
        }
    }
    Log(LOG_INFO, "Configuration backed up to %s (%d files)", kBackupDirectory, saved);
    return true;
}

bool HostConfigurationImpl::ResetToFactoryDefaults() const {
    bool removedAll = true;
    for (const auto& file : ConsoleWrittenFiles()) {
        if (::unlink(HostPath(file).c_str()) == 0 || errno == ENOENT) {
            Log(LOG_INFO, "Reset: removed %s", file.c_str());
            continue;
        }
        Log(LOG_ERR, "Reset: removing %s failed: %s", file.c_str(), std::strerror(errno));
        removedAll = false;
    }
    return removedAll;
}

// The standard warning speaks of passwords and machines, which a Linux host
// keeps: its reset removes only what the console wrote.
std::string HostConfigurationImpl::ResetWarning() const {
    return "Warning!\n\nThe console's own settings will be removed: its options, the shell and SSH "
           "time-outs, and the network files it wrote. The host then takes its network from "
           "its own configuration. The root password, the keyboard layout and the virtual "
           "machines stay as they are.\n\nThis operation requires a restart of the host. It is "
           "recommended to previously shut down or migrate running virtual machines off this "
           "host.";
}

}  // namespace LinuxHost
