// The network-virtualisation operations agent's service script, version test
// and switch tool, run through the command runner. For host backends only:
// screens reach the agent through HostCtl::Network::OperationsAgent.
#pragma once

#include <string>

namespace Tesk {

// Each runs its tool under timeLimit (seconds, as RunCommand's).

// "/etc/init.d/plex-opsagent stop"; stopped tells whether it worked. Logs
// "Stopping plex-opsagent." and the outcome.
void StopPlexOpsAgent(bool& stopped, int timeLimit = 0);
// "/etc/init.d/plex-opsagent start" when stopped, else only logs "Skipping
// plex-opsagent start.".
void StartPlexOpsAgent(bool stopped, int timeLimit = 0);
// The service script answers "status" with 0 (logged "Running: ..." and
// "plex-opsagent is [not ]present on the system.").
bool IsPlexOpsAgentPresent(int timeLimit = 0);
// The installed package's major version is 3 or more (the shell line is
// logged; "plex-opsagent version >= 3 detected" when it is).
bool IsPlexOpsAgentV3(int timeLimit = 0);
// Both of the above, the version asked only when the agent is present.
bool PlexOpsAgentV3Present(int timeLimit = 0);
// The agent's switch tool moves the Zerkel NIC interfaceName onto the
// standard port group port: "plexcfg-vswitch" "-m" "-p" port "-I"
// interfaceName, its outcome logged as a command's; true on exit status 0.
bool PlexCfgVswitchMigrate(const std::string& port, const std::string& interfaceName,
                           int timeLimit = 0);

}  // namespace Tesk
