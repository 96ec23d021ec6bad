// The configuration the console writes on a Linux host, as a whole: its
// backup and its reset. What the console writes is its option file
// (linuxhost/options.h), the welcome text, the shell's time-outs (the
// profile script /etc/profile.d/tesk-timeout.sh and the units' drop-ins
// /etc/systemd/system/*.d/tesk-availability.conf) and the systemd-networkd
// files whose names carry the console's mark "tesk-" after their number
// ("30-tesk-management.network") under /etc/systemd/network and
// /run/systemd/network. A backup copies those files into kBackupDirectory
// (replacing the last backup); a reset removes them (the host must then
// restart). The keyboard layout in /etc/default/keyboard is the host's own
// setting and stays. A Linux host has no custom extensions to remove.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "hostctl/configuration.h"

namespace LinuxHost {

inline constexpr const char kBackupDirectory[] = "/var/backups/tesk";

class HostConfigurationImpl : public HostCtl::Configuration::HostConfiguration {
public:
    bool Backup() const override;
    bool ResetToFactoryDefaults() const override;
    std::string ResetWarning() const override;
    bool HasCustomExtensions() const override { return false; }
    bool RemoveCustomExtensions() const override { return false; }
};

// Whether a networkd file name carries the console's mark.
bool IsConsoleNetworkFile(std::string_view name);

// The host paths of every file the console wrote that exists now.
std::vector<std::string> ConsoleWrittenFiles();

}  // namespace LinuxHost
