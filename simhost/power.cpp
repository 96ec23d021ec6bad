// The simulated host's power: the automatic stop order through the management
// tool, the machines' power-off tool, and the power commands through the shell,
// each with the host tools' own argument vectors.
#include "simhost/power.h"

#include "host/runner.h"
#include "simhost/tool_limits.h"

namespace ZrkCtl::Power {

void PowerControlImpl::StopVirtualMachines(const std::string& user, bool graceful) const {
    Tesk::PowerOffVms(user, graceful, Sim::ToolLimit(Tesk::ToolJob::VirtualMachinesStop));
}

bool PowerControlImpl::PowerOffAllVirtualMachines() const {
    const char* const argv[] = {"powerOffVms", nullptr};
    return Tesk::RunCommand("/sbin/powerOffVms", argv, nullptr, nullptr, nullptr, nullptr, nullptr,
                            0, Sim::ToolLimit(Tesk::ToolJob::VirtualMachinesStop)) == 0;
}

bool PowerControlImpl::PowerOffHost() const {
    return Tesk::RunShellCommand("poweroff", Sim::ToolLimit(Tesk::ToolJob::HostPower)) != -1;
}

bool PowerControlImpl::RestartHost() const {
    return Tesk::RunShellCommand("reboot", Sim::ToolLimit(Tesk::ToolJob::HostPower)) != -1;
}

bool PowerControlImpl::ForceRestartHost() const {
    return Tesk::RunShellCommand("reboot -f", Sim::ToolLimit(Tesk::ToolJob::HostPower)) != -1;
}

}  // namespace ZrkCtl::Power
