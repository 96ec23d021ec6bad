// The simulated host's network-virtualisation operations agent: its service
// script, its package's version and its switch tool.
#pragma once

#include "hostctl/operations_agent.h"

namespace ZrkCtl::Network {

class OperationsAgentImpl : public HostCtl::Network::OperationsAgent {
public:
    bool IsVersion3Present() const override;
    bool MigrateZrkNic(const std::string& nic, const std::string& portGroup) const override;
};

}  // namespace ZrkCtl::Network
