// A port group through "kovacli network vswitch standard portgroup add -p
// <group> -v <switch>", its outcome logged as the tool's command.
#include "simhost/port_group_creator.h"

#include "host/runner.h"
#include "simhost/tool_limits.h"

namespace ZrkCtl::Network {

bool PortGroupCreatorImpl::CreatePortGroup(const std::string& portGroup,
                                           const std::string& vswitch) const {
    return Tesk::AddStandardPortGroup(portGroup, vswitch,
                                      Sim::ToolLimit(Tesk::ToolJob::SwitchRepair));
}

}  // namespace ZrkCtl::Network
