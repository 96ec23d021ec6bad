// The simulated host's management agents: its service script, the management
// tool's refresh and the live-core tool.
#pragma once

#include "hostctl/agents.h"

namespace ZrkCtl::Agents {

class ManagementAgentsImpl : public HostCtl::Agents::ManagementAgents {
public:
    void Refresh(const std::string& user) const override;
    void Stop() const override;
    void Start() const override;
    bool CollectLiveCore() const override;
};

}  // namespace ZrkCtl::Agents
