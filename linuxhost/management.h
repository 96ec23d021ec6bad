// Which bridge is the management network and how it is configured. The
// bridge is named by the backend's option network.bridge (default "br0");
// its configuration is held in our own networkd files
// (/etc/systemd/network/60-tesk-*, linuxhost/networkd_config.h and
// linuxhost/networkd_trial.h). A host whose
// bridge exists but has none of our files yet (set up by its installer) is
// described as the kernel has it, and the first change writes our files.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "linuxhost/netlink.h"
#include "linuxhost/networkd_config.h"
#include "linuxhost/networkd_trial.h"

namespace LinuxHost {

inline constexpr char kManagementPortGroup[] = "Management Network";

std::string ManagementBridge();

// The management network as configured; none when the host has neither our
// files nor the bridge.
std::optional<ManagementConfig> LoadManagement(const KernelNet& net);

// Writes the files of config (each replaced atomically; on trial during a
// network change, linuxhost/networkd_trial.h), removes our files it no longer
// needs, and has networkd read them again (it configures the links
// whose files changed). A bridge that exists takes a changed MAC address at
// once; a VLAN link that is no longer used is deleted. Throws (logged) when a
// file cannot be written or networkd cannot be asked.
void SaveManagement(const ManagementConfig& config);

// Loads the management network, changes it with change and saves it as
// SaveManagement does. Throws (logged) when the host has none.
void ChangeManagement(const std::function<void(ManagementConfig&)>& change);

// Removes every file of ours and the bridges they made, and has networkd
// read the rest again.
void RemoveManagement();

}  // namespace LinuxHost
