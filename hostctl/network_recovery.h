// Value types of the network repairs: the settings of a distributed-switch
// port, as the console reads them from the management interface's port and
// writes them to a new host-local port.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace HostCtl::Network {

// A distributed-switch port's settings. Uplinks are named by the switch's
// uplink ports ("uplink1"), not by physical NIC.
struct QdsPortSettings {
    std::uint16_t vlanId = 0;  // 0: no VLAN
    bool blocked = false;
    std::vector<std::string> activeUplinks;
    std::vector<std::string> standbyUplinks;
    // Everything else the port carries (MTU, security and shaping policies,
    // ...) by name, copied as it is.
    std::map<std::string, std::string> properties;

    bool operator==(const QdsPortSettings&) const = default;
};

// The prefix of the ports the host makes on a distributed switch itself.
inline constexpr char kHostLocalPortPrefix[] = "hlp-";

}  // namespace HostCtl::Network
