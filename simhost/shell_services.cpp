// The simulated host's shell and SSH: "rux-cmd" as the user with the init
// script as the fallback, the firewall ruleset "sshServer", the time-outs
// through "kovacfg-advcfg" (read) and "kovacli" or "kovacli-local" (write),
// each with the host tools' own argument vectors and log lines.
#include "simhost/shell_services.h"

#include <cstdlib>
#include <string>
#include <string_view>

#include "host/runner.h"
#include "hostctl/exception.h"
#include "platform/syslog.h"
#include "simhost/system.h"
#include "simhost/tool_limits.h"

namespace ZrkCtl::Services {
namespace {

using HostCtl::Services::Service;
using HostCtl::Services::ShellTimeout;

// What switching one service takes: its init script, its management-tool
// commands and the lines logged when the tool fails.
struct ServiceTools {
    const char* initScript;
    const char* start;
    const char* stop;
    const char* enable;
    const char* disable;
    const char* startStopFailed;
    const char* enableDisableFailed;
};

constexpr ServiceTools kShell{"/etc/init.d/KovaShell",
                              "hostsvc/start_kova_shell",
                              "hostsvc/stop_kova_shell",
                              "hostsvc/enable_kova_shell",
                              "hostsvc/disable_kova_shell",
                              "Unable to run rux-cmd to start/stop Kovix Shell",
                              "Unable to run rux-cmd to enable/disable Kovix Shell"};
constexpr ServiceTools kSsh{"/etc/init.d/SSH",
                            "hostsvc/start_ssh",
                            "hostsvc/stop_ssh",
                            "hostsvc/enable_ssh",
                            "hostsvc/disable_ssh",
                            "Unable to run rux-cmd to start/stop ssh",
                            "Unable to run rux-cmd to enable/disable ssh"};

const ServiceTools& ToolsOf(Service service) {
    return service == Service::Shell ? kShell : kSsh;
}

const char* OptionOf(ShellTimeout timeout) {
    return timeout == ShellTimeout::Availability ? "/UserVars/KovixShellTimeOut"
                                                 : "/UserVars/KovixShellInteractiveTimeOut";
}

int RunAs(const std::string& user, const char* command) {
    const char* argv[] = {"rux-cmd", "-U", user.c_str(), command, nullptr};
    return Tesk::RuxCmdRun("/bin/rux-cmd", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0,
                           Sim::ToolLimit(Tesk::ToolJob::ServiceSwitch));
}

// "sh SCRIPT VERB": the service's own way.
int RunInitScript(const char* script, const char* verb) {
    const char* argv[] = {"sh", script, verb, nullptr};
    const Tesk::ToolJob job = std::string_view(verb) == "status" ? Tesk::ToolJob::ServiceStatus
                                                                 : Tesk::ToolJob::ServiceSwitch;
    return Tesk::RunCommand("/bin/sh", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0,
                            Sim::ToolLimit(job));
}

// Lets SSH through the firewall when the ruleset follows its service.
void OpenSshRuleset() {
    try {
        auto ruleset = System::SystemInfoImpl().GetFirewallRulesetById("sshServer");
        if (ruleset.IsServiceControlled()) {
            ruleset.SetEnabled(true);
            ruleset.Apply();
        }
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Tesk::Platform::Log(LOG_WARNING, "Failed to update firewall sshServer ruleset status: %s",
                            e.what());
    }
}

}  // namespace

bool ShellServicesImpl::IsRunning(Service service) const {
    return RunInitScript(ToolsOf(service).initScript, "status") == 0;
}

void ShellServicesImpl::Switch(Service service, bool on, const std::string& user) const {
    const ServiceTools& tools = ToolsOf(service);
    if (RunAs(user, on ? tools.start : tools.stop) != 0) {
        Tesk::Platform::Log(LOG_WARNING, "%s", tools.startStopFailed);
        RunInitScript(tools.initScript, on ? "start" : "stop");
    }
    if (on && service == Service::Ssh) OpenSshRuleset();
    if (RunAs(user, on ? tools.enable : tools.disable) != 0)
        Tesk::Platform::Log(LOG_WARNING, "%s", tools.enableDisableFailed);
}

void ShellServicesImpl::RestartIfRunning(Service service) const {
    const char* script = ToolsOf(service).initScript;
    if (RunInitScript(script, "status") == 0) RunInitScript(script, "restart");
}

std::optional<long> ShellServicesImpl::GetTimeoutSeconds(ShellTimeout timeout) const {
    const char* option = OptionOf(timeout);
    const char* argv[] = {"kovacfg-advcfg", "-q", "-g", option, nullptr};
    char out[Tesk::kCaptureBufferSize] = {};
    int length = Tesk::kCaptureCapacity;
    const int rc = Tesk::RunCommand("/sbin/kovacfg-advcfg", argv, out, &length, nullptr, nullptr,
                                    nullptr, 0, Sim::ToolLimit(Tesk::ToolJob::AdvancedOptionRead));
    if (rc != 0 || length <= 0) {
        Tesk::Platform::Log(LOG_ERR, "Unable to read %s", option);
        return std::nullopt;
    }
    // The last byte is the line feed.
    out[length - 1] = '\0';
    return std::strtol(out, nullptr, 10);
}

bool ShellServicesImpl::SetTimeoutSeconds(ShellTimeout timeout, unsigned long long seconds) const {
    const char* option = OptionOf(timeout);
    const std::string value = std::to_string(seconds);
    // The host command tool, or its local variant when that fails.
    const char* argv[] = {"kovacli", "system", "settings", "advanced",    "set",
                          "-o",      option,   "-i",       value.c_str(), nullptr};
    const int limit = Sim::ToolLimit(Tesk::ToolJob::AdvancedOptionWrite);
    if (Tesk::RunCommand("/sbin/kovacli", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0,
                         limit) == 0)
        return true;
    argv[0] = "kovacli-local";
    if (Tesk::RunCommand("/sbin/kovacli-local", argv, nullptr, nullptr, nullptr, nullptr, nullptr,
                         0, limit) == 0)
        return true;
    Tesk::Platform::Log(LOG_ERR, "Unable to set %s", option);
    return false;
}

}  // namespace ZrkCtl::Services
