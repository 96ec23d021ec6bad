// The network-virtualisation operations agent: a service some hosts run
// beside the management agents, which owns the move of a Zerkel NIC onto a
// standard switch. The interface only; a host backend (hostctl/backend.h)
// hands out the object.
#pragma once

#include <string>

namespace HostCtl::Network {

class OperationsAgent {
public:
    virtual ~OperationsAgent() = default;

    // True when the agent is installed at major version 3 or later (the
    // version that can move a Zerkel NIC); false when it is missing, older,
    // or the host cannot tell. Logs what it found; changes nothing; never
    // throws.
    virtual bool IsVersion3Present() const = 0;

    // Connects the Zerkel NIC nic to the standard-switch port group
    // portGroup through the agent's own tool. The agent is stopped around the
    // move and started again afterwards only when this call stopped it, so
    // an agent that was running runs again and one that could not be stopped
    // is left alone. True when the NIC was moved. A NIC or port group the
    // host does not have, or a failing tool, answers false with the reason
    // logged and the NIC's connection unchanged; nothing is thrown.
    virtual bool MigrateZrkNic(const std::string& nic, const std::string& portGroup) const = 0;
};

}  // namespace HostCtl::Network
