// The shell and SSH switches of the troubleshooting window.
#include "admin/troubleshooting_switches.h"

#include <exception>

#include "host/runner.h"
#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "hostctl/system.h"
#include "platform/syslog.h"

namespace Tesk {
namespace {

constexpr const char kShellScript[] = "/etc/init.d/KovaShell";
constexpr const char kSshScript[] = "/etc/init.d/SSH";

int RunAs(const std::string& user, const char* command) {
    const char* argv[] = {"rux-cmd", "-U", user.c_str(), command, nullptr};
    return RuxCmdRun("/bin/rux-cmd", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0);
}

void RunInitScript(const char* script, const char* verb) {
    const char* argv[] = {"sh", script, verb, nullptr};
    RunCommand("/bin/sh", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0);
}

// Lets SSH through the firewall when the ruleset follows its service.
void OpenSshRuleset() {
    try {
        auto ruleset = HostCtl::TheBackend().GetSystemInfo()->GetFirewallRulesetById("sshServer");
        if (ruleset.IsServiceControlled()) {
            ruleset.SetEnabled(true);
            ruleset.Apply();
        }
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Platform::Log(LOG_WARNING, "Failed to update firewall sshServer ruleset status: %s",
                      e.what());
    }
}

}  // namespace

bool ServiceRunning(const char* initScript) {
    const char* argv[] = {"sh", initScript, "status", nullptr};
    return RunCommand("/bin/sh", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0) == 0;
}

void SwitchShell(const std::string& user, bool* enabled) {
    const bool on = !*enabled;
    if (RunAs(user, on ? "hostsvc/start_kova_shell" : "hostsvc/stop_kova_shell") != 0) {
        Platform::Log(LOG_WARNING, "%s", "Unable to run rux-cmd to start/stop Kovix Shell");
        RunInitScript(kShellScript, on ? "start" : "stop");
    }
    if (RunAs(user, on ? "hostsvc/enable_kova_shell" : "hostsvc/disable_kova_shell") != 0)
        Platform::Log(LOG_WARNING, "%s", "Unable to run rux-cmd to enable/disable Kovix Shell");
    *enabled = on;
    Platform::Log(LOG_INFO, on ? "User %s enabled Kovix Shell" : "User %s disabled Kovix Shell",
                  user.c_str());
}

void SwitchSsh(const std::string& user, bool* enabled) {
    const bool on = !*enabled;
    if (RunAs(user, on ? "hostsvc/start_ssh" : "hostsvc/stop_ssh") != 0) {
        Platform::Log(LOG_WARNING, "%s", "Unable to run rux-cmd to start/stop ssh");
        RunInitScript(kSshScript, on ? "start" : "stop");
    }
    if (on) OpenSshRuleset();
    if (RunAs(user, on ? "hostsvc/enable_ssh" : "hostsvc/disable_ssh") != 0)
        Platform::Log(LOG_WARNING, "%s", "Unable to run rux-cmd to enable/disable ssh");
    *enabled = on;
    Platform::Log(LOG_INFO, on ? "User %s enabled SSH" : "User %s disabled SSH", user.c_str());
}

}  // namespace Tesk
