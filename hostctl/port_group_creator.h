// Adding a port group to one of the host's standard switches. The interface
// only; a host backend (hostctl/backend.h) hands out the object.
#pragma once

#include <string>

namespace HostCtl::Network {

class PortGroupCreator {
public:
    virtual ~PortGroupCreator() = default;

    // Adds the port group portGroup, without a VLAN, to the standard switch
    // vswitch; true when the host has it afterwards. A name the host refuses
    // or already has, a switch it does not have, or any other failure
    // answers false with the reason logged; nothing is thrown, and the host's
    // switches and port groups are left as they were.
    virtual bool CreatePortGroup(const std::string& portGroup,
                                 const std::string& vswitch) const = 0;
};

}  // namespace HostCtl::Network
