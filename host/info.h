// The host's Zerkel NICs and port groups as plain records, for the lists
// that show them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "hostctl/backend.h"

namespace Tesk {

// One Zerkel NIC; an empty text the host gives is "N/A".
struct ZrkNicRecord {
    std::string name;
    std::string mac;
    std::string portset;  // the switch's name
    std::string portGroup;
};

// One port group of a standard switch.
struct PortGroupRecord {
    std::string name;
    std::string vswitch;
    std::int64_t activeClients = 0;
    std::int64_t vlanId = 0;
};

// Every Zerkel NIC. False (logged) when the host cannot list them; what was
// read stays.
bool LoadZrkNics(const HostCtl::Backend& host, std::vector<ZrkNicRecord>& records);

// Every port group of the standard switches.
bool LoadPortGroups(const HostCtl::Backend& host, std::vector<PortGroupRecord>& records);

}  // namespace Tesk
