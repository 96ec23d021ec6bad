// The operations agent through its host tools (host/ops_agent_service.h), with
// their argument vectors and log lines.
#include "simhost/operations_agent.h"

#include "host/ops_agent_service.h"

namespace ZrkCtl::Network {

bool OperationsAgentImpl::IsVersion3Present() const {
    return Tesk::PlexOpsAgentV3Present();
}

bool OperationsAgentImpl::MigrateZrkNic(const std::string& nic,
                                        const std::string& portGroup) const {
    bool stopped = false;
    Tesk::StopPlexOpsAgent(stopped);
    const bool migrated = Tesk::PlexCfgVswitchMigrate(portGroup, nic);
    Tesk::StartPlexOpsAgent(stopped);
    return migrated;
}

}  // namespace ZrkCtl::Network
