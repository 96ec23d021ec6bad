// The network-virtualisation operations agent's service, through its init
// script, the package manager's version and the agent's switch tool.
#include "host/ops_agent_service.h"

#include "host/runner.h"
#include "platform/syslog.h"

namespace Tesk {
namespace {

constexpr const char kPlexOpsAgent[] = "/etc/init.d/plex-opsagent";

// The version test of the agent: the major number of the installed package's
// version, 3 or more.
constexpr const char kPlexOpsAgentV3Test[] =
    "let v=`kovacli --formatter=keyvalue software vib get -n plex-opsagent | awk "
    "'/Version/{ split($0, kv, \"=\"); split(kv[2], ver, \".\"); print ver[1] }'`; "
    "(exit $((v < 3)))";

}  // namespace

void StopPlexOpsAgent(bool& stopped, int timeLimit) {
    Platform::Log(LOG_INFO, "%s", "Stopping plex-opsagent.");
    stopped = RunShellCommand((std::string(kPlexOpsAgent) + " stop").c_str(), timeLimit) == 0;
    if (stopped)
        Platform::Log(LOG_INFO, "%s", "plex-opsagent has been successfully stopped.");
    else
        Platform::Log(LOG_ERR, "%s", "Failed to stop plex-opsagent.");
}

void StartPlexOpsAgent(bool stopped, int timeLimit) {
    if (!stopped) {
        Platform::Log(LOG_INFO, "%s", "Skipping plex-opsagent start.");
        return;
    }
    Platform::Log(LOG_INFO, "%s", "Starting plex-opsagent.");
    if (RunShellCommand((std::string(kPlexOpsAgent) + " start").c_str(), timeLimit) == 0)
        Platform::Log(LOG_INFO, "%s", "plex-opsagent has been successfully started.");
    else
        Platform::Log(LOG_ERR, "%s", "Failed to start plex-opsagent.");
}

bool IsPlexOpsAgentPresent(int timeLimit) {
    const std::string command = std::string(kPlexOpsAgent) + " status";
    Platform::Log(LOG_INFO, "Running: %s", command.c_str());
    bool present = RunShellCommand(command.c_str(), timeLimit) == 0;
    Platform::Log(LOG_INFO, "plex-opsagent is %spresent on the system.", present ? "" : "not ");
    return present;
}

bool IsPlexOpsAgentV3(int timeLimit) {
    Platform::Log(LOG_INFO, "Running: %s", kPlexOpsAgentV3Test);
    if (RunShellCommand(kPlexOpsAgentV3Test, timeLimit) != 0) return false;
    Platform::Log(LOG_INFO, "%s", "plex-opsagent version >= 3 detected");
    return true;
}

bool PlexOpsAgentV3Present(int timeLimit) {
    return IsPlexOpsAgentPresent(timeLimit) && IsPlexOpsAgentV3(timeLimit);
}

bool PlexCfgVswitchMigrate(const std::string& port, const std::string& interfaceName,
                           int timeLimit) {
    static constexpr const char kTool[] = "/usr/lib64/brelt/plex-opsagent/bin/plexcfg-vswitch";
    const char* argv[] = {kTool, "-m", "-p", port.c_str(), "-I", interfaceName.c_str(), nullptr};
    return RunCommandLogged(kTool, argv, timeLimit) == 0;
}

}  // namespace Tesk
