// Host queries the network screens share: physical NICs and their order, the
// switch that owns each uplink, standard switches, the management interface.
// Each query asks the host afresh, logs its own failure and answers false (or
// none) instead of throwing. The screens' list rows and detail texts are made
// from these records by network/list_format.h.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hostctl/backend.h"
#include "hostctl/network.h"

namespace Tesk {

// One standard switch.
struct SwitchSummary {
    std::string name;
    std::vector<std::string> uplinks;
    std::vector<std::string> portGroups;
    std::int64_t numPorts = 0;
    std::int64_t usedPorts = 0;
    std::int64_t configuredPorts = 0;
};

// One physical NIC.
struct PnicSummary {
    std::string name;
    std::string hardwareLabel;  // the PCI description, or "N/A"
    std::string macAddress;
    std::string connectionStatus;  // "Connected" or "Disconnected"
    std::string usedBy;            // the switch that has it as uplink; empty when free
};

// Physical NIC name to the switch that has it as an uplink.
using UplinkOwnerMap = std::map<std::string, std::string>;

// The management Zerkel NIC, or null when the host has none (or cannot say).
std::unique_ptr<HostCtl::Network::ZrkNic> GetManagementInterface(const HostCtl::Backend& host);

// Whether the management interface sits on a distributed-switch port.
bool IsManagementOnQds(const HostCtl::Backend& host);

// True when a sorts before b: "pnicN" names by their number, other names
// byte by byte (a prefix first).
bool ComparePnicNames(const std::string& a, const std::string& b);

// Every physical NIC's name, sorted with ComparePnicNames.
bool GetPnicNames(const HostCtl::Backend& host, std::vector<std::string>& names);

// The NIC's summary; none (logged) when it cannot be read.
std::optional<PnicSummary> GetPnicSummary(const HostCtl::Backend& host, const std::string& name,
                                          const UplinkOwnerMap& owners);

// Adds, for each of names that a switch uses, the switch's name; a NIC that a
// standard and a distributed switch both list gets the distributed one.
bool BuildUplinkOwnerMap(const HostCtl::Backend& host, const std::vector<std::string>& names,
                         UplinkOwnerMap& owners);

// Appends one summary per standard switch, in the host's order.
bool GetStandardSwitches(const HostCtl::Backend& host, std::vector<SwitchSummary>& switches);

// The texts joined by separator ("," without blanks unless told); empty for
// an empty list.
std::string JoinNames(const std::vector<std::string>& names, const char* separator = ",");

}  // namespace Tesk
