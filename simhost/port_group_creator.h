// The simulated host's new port groups: its switch command-line tool.
#pragma once

#include "hostctl/port_group_creator.h"

namespace ZrkCtl::Network {

class PortGroupCreatorImpl : public HostCtl::Network::PortGroupCreator {
public:
    bool CreatePortGroup(const std::string& portGroup, const std::string& vswitch) const override;
};

}  // namespace ZrkCtl::Network
