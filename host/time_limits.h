// How long each host tool may run before the command runner kills it: one
// limit per job, all in one table (time_limits.cpp; docs/failures.md lists it
// for the administrator). Every call that runs a host tool passes the limit of
// its job, so no tool can hold the console for good.
#pragma once

namespace Tesk {

enum class ToolJob {
    LockdownQuery,           // rux-cmd ruxsvc/auth/lockdown_is_...
    LockdownChange,          // rux-cmd ruxsvc/auth/lockdown_mode_enter / _exit
    CustomExtensionsCheck,   // kovacli software vib list --custom, as the menu opens
    ServiceStatus,           // sh /etc/init.d/<service> status
    ServiceSwitch,           // rux-cmd hostsvc/... and the init script's start, stop, restart
    AdvancedOptionRead,      // kovacfg-advcfg -q -g
    AdvancedOptionWrite,     // kovacli / kovacli-local system settings advanced set
    ConfigurationBackup,     // backup.sh 0
    AgentRefresh,            // rux-cmd internalsvc/refresh
    VirtualMachinesStop,     // rux-cmd hostsvc/autostartmanager/autostop, powerOffVms
    HostPower,               // poweroff, reboot, reboot -f
    ConfigurationReset,      // factoryConfig.py --reset-only / --remove-custom-extensions
    AgentsRestart,           // services.sh stop / start
    LiveCore,                // zrkbacktrace
    Ping,                    // zrkping -c 3
    SwitchRepair,            // kovacli network vswitch ..., plexcfg-vswitch
    OperationsAgentService,  // the operations agent's init script and version test
};

// The job's limit in seconds. `cap`, when above 0, shortens every limit to at
// most that many seconds (a test host's setting; never lengthens one).
int TimeLimitSeconds(ToolJob job, int cap = 0);

}  // namespace Tesk
