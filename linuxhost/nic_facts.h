// What makes a link a physical NIC, and what the kernel tells of its
// hardware (driver, speed, duplex, PCI address) through sysfs. A host root
// that carries its own sys/class/net (a fixture) is read there; otherwise
// the kernel's /sys, which in a network namespace with its own sysfs shows
// that namespace's links.
#pragma once

#include <optional>
#include <string>

#include "linuxhost/netlink.h"

namespace LinuxHost {

struct NicHardware {
    std::string driver;      // "e1000e", "veth"; empty when unknown
    std::string pciAddress;  // "0000:03:00.0"; empty when not on PCI
    std::optional<int> speedMbps;
    std::string duplex;  // "full", "half" or empty
};

// An Ethernet link with a device behind it, or a veth cable (what containers
// and the lab give a host as its NICs). Bridges, VLANs, taps and the like are
// not physical NICs.
bool IsPhysicalNic(const LinkFact& link);

NicHardware ReadNicHardware(const std::string& name);

}  // namespace LinuxHost
