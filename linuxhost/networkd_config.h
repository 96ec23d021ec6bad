// The management network as systemd-networkd files of our own: what the
// console configures (bridge, uplinks, VLAN, IPv4 and IPv6 modes, static
// addresses and gateways, name servers, search domains) rendered to the
// .netdev and .network files that hold it, and read back from them. Both
// directions are pure: linuxhost/networkd_store.h reads and writes the files.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "hostctl/network_types.h"

namespace LinuxHost {

// Our files all start with this, so they are told from the host's own.
inline constexpr char kOurFilePrefix[] = "60-tesk-";

struct ManagementConfig {
    std::string bridge;  // the standard switch: a Linux bridge
    std::string mac;     // the bridge's MAC address; empty: networkd's choice
    std::vector<std::string> uplinks;
    std::uint16_t vlanId = 0;  // 0: the addresses sit on the bridge itself
    // Modes, static addresses, default gateways and whether DHCP gives DNS.
    HostCtl::Network::IpConfig ip;
    std::vector<std::string> nameServers;
    std::vector<std::string> searchDomains;

    // The link that carries the management addresses: the bridge, or its
    // VLAN link "br0.5".
    std::string Interface() const;
};

// File name to text.
using NetworkdFiles = std::map<std::string, std::string>;

NetworkdFiles RenderNetworkd(const ManagementConfig& config);

// The configuration of bridge held in files (other files are ignored); none
// when they hold no management network on that bridge.
std::optional<ManagementConfig> ParseNetworkd(const NetworkdFiles& files,
                                              const std::string& bridge);

}  // namespace LinuxHost
