// The simulated host's management agents, through its own tools with their
// argument vectors and log lines.
#include "simhost/agents.h"

#include "host/command_line.h"
#include "host/runner.h"
#include "platform/syslog.h"
#include "simhost/tool_limits.h"

namespace ZrkCtl::Agents {

void ManagementAgentsImpl::Refresh(const std::string& user) const {
    if (!user.empty()) {
        Tesk::RefreshHostAgent(user, Sim::ToolLimit(Tesk::ToolJob::AgentRefresh));
        return;
    }
    const char* argv[] = {"rux-cmd", "internalsvc/refresh", nullptr};
    Tesk::RunCommandLogged("/bin/rux-cmd", argv, Sim::ToolLimit(Tesk::ToolJob::AgentRefresh));
}

void ManagementAgentsImpl::Stop() const {
    Tesk::RunCommandLine("/bin/sh /sbin/services.sh stop", false, true, false,
                         Sim::ToolLimit(Tesk::ToolJob::AgentsRestart));
}

void ManagementAgentsImpl::Start() const {
    Tesk::RunCommandLine("/bin/sh /sbin/services.sh start", false, true, false,
                         Sim::ToolLimit(Tesk::ToolJob::AgentsRestart));
}

bool ManagementAgentsImpl::CollectLiveCore() const {
    Tesk::Platform::Log(LOG_INFO, "%s", "Executing zrkbacktrace -c against hagentd");
    const int rc =
        Tesk::RunCommandLine("/sbin/zrkbacktrace -w -n hagentd -o hagentd-restart% -d /var/log/",
                             false, true, false, Sim::ToolLimit(Tesk::ToolJob::LiveCore));
    if (rc != 0)
        Tesk::Platform::Log(LOG_ERR, "%s", "zrkbacktrace failed, probably hagentd was down");
    return rc == 0;
}

}  // namespace ZrkCtl::Agents
