// The management network as the administrator is editing it: read from the
// host once when the management network window opens, changed by its dialogs,
// and written to the host only by the apply procedure (network/apply_changes.h)
// after the administrator confirms. Nothing here touches the host.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "hostctl/network.h"
#include "hostctl/network_types.h"

namespace Tesk {

struct PendingNetworkConfig {
    // The management interface; never null once the window is open.
    std::unique_ptr<HostCtl::Network::ZrkNic> nic;
    // The interface hangs on a distributed switch: adapters and VLAN are not
    // the console's to change.
    bool onDistributedSwitch = false;

    // The addresses in effect (IPv4 address, netmask, "none", the IPv6
    // networks) plus the host's default IPv4 and IPv6 gateways.
    HostCtl::Network::IpConfig address;
    // The configured modes; only its flags count (DHCP, DHCPv6, router
    // advertisement, DNS by DHCP).
    HostCtl::Network::IpConfig mode;

    // The active uplinks of the management port group, in order, and how many
    // of them carry traffic at once.
    std::vector<std::string> adapters;
    std::int32_t activeUplinks = 0;
    // 0: not set.
    std::uint16_t vlanId = 0;

    std::string hostname;
    // The search domains as read, and as the suffix dialog edits them: one
    // text, the domains joined with ", ".
    std::vector<std::string> suffixes;
    std::string suffixText;
    // Null when not set.
    std::unique_ptr<HostCtl::Network::IpAddress> primaryDns;
    std::unique_ptr<HostCtl::Network::IpAddress> alternateDns;

    // Something other than the IPv6 on/off switch was changed.
    bool changed = false;
    // The IPv6 dialog changed the default IPv6 gateway.
    bool ipv6GatewayChanged = false;
    // IPv6 shall be on / is on in the host now.
    bool ipv6Pending = false;
    bool ipv6Host = false;
};

}  // namespace Tesk
