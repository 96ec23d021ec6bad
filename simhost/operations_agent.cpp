// The operations agent through its host tools (host/ops_agent_service.h), with
// their argument vectors and log lines.
#include "simhost/operations_agent.h"

#include "host/ops_agent_service.h"
#include "simhost/tool_limits.h"

namespace ZrkCtl::Network {

bool OperationsAgentImpl::IsVersion3Present() const {
    return Tesk::PlexOpsAgentV3Present(Sim::ToolLimit(Tesk::ToolJob::OperationsAgentService));
}

bool OperationsAgentImpl::MigrateZrkNic(const std::string& nic,
                                        const std::string& portGroup) const {
    const int serviceLimit = Sim::ToolLimit(Tesk::ToolJob::OperationsAgentService);
    bool stopped = false;
    Tesk::StopPlexOpsAgent(stopped, serviceLimit);
    const bool migrated =
        Tesk::PlexCfgVswitchMigrate(portGroup, nic, Sim::ToolLimit(Tesk::ToolJob::SwitchRepair));
    Tesk::StartPlexOpsAgent(stopped, serviceLimit);
    return migrated;
}

}  // namespace ZrkCtl::Network
