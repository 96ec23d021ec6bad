// The local shell and SSH as systemd units (the options "units.shell" and
// "units.ssh"): started and enabled, or stopped and disabled, over the bus;
// their time-outs in the files of linuxhost/shell_timeouts.h.
#include "linuxhost/options.h"
#include "linuxhost/run_objects.h"
#include "linuxhost/shell_timeouts.h"
#include "linuxhost/systemd_units.h"
#include "platform/syslog.h"

namespace LinuxHost {
namespace {

using HostCtl::Services::Service;
using HostCtl::Services::ShellTimeout;

std::string UnitOf(Service service) {
    return Options::Text(service == Service::Shell ? "units.shell" : "units.ssh").value_or("");
}

class ShellServices : public HostCtl::Services::ShellServices {
public:
    bool IsRunning(Service service) const override {
        return Systemd().ActiveState(UnitOf(service)) == "active";
    }

    void Switch(Service service, bool on, const std::string& user) const override {
        const std::string unit = UnitOf(service);
        Systemd systemd;
        const bool switched = on ? systemd.Start(unit) : systemd.Stop(unit);
        const bool boot = systemd.Enable(unit, on);
        Tesk::Platform::Log(switched && boot ? LOG_INFO : LOG_WARNING, "%s %s for %s: %s",
                            unit.c_str(), on ? "start and enable" : "stop and disable",
                            user.c_str(), switched && boot ? "done" : "failed");
    }

    void RestartIfRunning(Service service) const override {
        const std::string unit = UnitOf(service);
        Systemd systemd;
        if (systemd.ActiveState(unit) == "active") systemd.Restart(unit);
    }

    std::optional<long> GetTimeoutSeconds(ShellTimeout timeout) const override {
        return ReadShellTimeout(timeout);
    }

    bool SetTimeoutSeconds(ShellTimeout timeout, unsigned long long seconds) const override {
        return WriteShellTimeout(timeout, seconds);
    }
};

}  // namespace

std::unique_ptr<HostCtl::Services::ShellServices> MakeShellServices() {
    return std::make_unique<ShellServices>();
}

}  // namespace LinuxHost
