// The time limits of the host tools' jobs. A query the console waits on
// before it can draw gets tens of seconds; a change that the host carries out
// while the administrator watches a progress screen (machines stopping, a
// reset, the agents restarting) gets minutes.
#include "host/time_limits.h"

#include <algorithm>

namespace Tesk {
namespace {

struct Limit {
    ToolJob job;
    int seconds;
};

constexpr Limit kLimits[] = {
    {ToolJob::LockdownQuery, 120},
    {ToolJob::LockdownChange, 120},
    {ToolJob::CustomExtensionsCheck, 30},
    {ToolJob::ServiceStatus, 30},
    {ToolJob::ServiceSwitch, 60},
    {ToolJob::AdvancedOptionRead, 30},
    {ToolJob::AdvancedOptionWrite, 60},
    {ToolJob::ConfigurationBackup, 120},
    {ToolJob::AgentRefresh, 60},
    {ToolJob::VirtualMachinesStop, 600},
    {ToolJob::HostPower, 60},
    {ToolJob::ConfigurationReset, 300},
    {ToolJob::AgentsRestart, 300},
    {ToolJob::LiveCore, 300},
    {ToolJob::Ping, 30},
    {ToolJob::SwitchRepair, 60},
    {ToolJob::OperationsAgentService, 120},
};

}  // namespace

int TimeLimitSeconds(ToolJob job, int cap) {
    int seconds = 120;
    for (const Limit& limit : kLimits)
        if (limit.job == job) seconds = limit.seconds;
    return cap > 0 ? std::min(seconds, cap) : seconds;
}

}  // namespace Tesk
