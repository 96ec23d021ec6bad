// Host queries of the management network window: the management interface's
// port group settings, the switch it hangs on, the adapters that could carry
// it and how each adapter is described. Each query logs its own failure line
// and answers false (or none) instead of throwing.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/queries.h"
#include "hostctl/backend.h"
#include "hostctl/network.h"

namespace Tesk {

// Whether the interface is connected to a distributed-switch port. A host
// failure is logged and counts as no.
bool IsOnDistributedSwitch(HostCtl::Network::ZrkNic& nic);

// What the management port group's teaming policy and VLAN say.
struct ManagementPortGroupSettings {
    std::vector<std::string> activeUplinks;
    std::int32_t maxActiveUplinks = 0;
    std::uint16_t vlanId = 0;
};

// Reads the uplinks, then the active-uplink count, then the VLAN ID of the
// interface's port group; none at the first query that fails (each logs its
// own line).
std::optional<ManagementPortGroupSettings> ReadManagementPortGroup(HostCtl::Network::ZrkNic& nic);

// The name of the standard or distributed switch the interface is connected
// to; none (logged) when it cannot be told.
std::optional<std::string> GetConnectionSwitchName(HostCtl::Network::ZrkNic& nic);

// Every physical adapter, sorted by name, with the switch that uses each;
// false when the list or the owners cannot be read (logged).
bool GetAdapters(const HostCtl::Backend& host, std::vector<PnicSummary>& adapters,
                 UplinkOwnerMap& owners);

// How an adapter is named to the administrator: its PCI device's name with
// white space collapsed, or its MAC address when it has no PCI device (or the
// name is empty). Empty (logged) when the adapter cannot be read.
std::string GetAdapterDescription(const HostCtl::Backend& host, const std::string& pnic);

}  // namespace Tesk
