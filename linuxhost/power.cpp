// Taking the Linux host down: its virtual machines first (linuxhost/
// machine_stop.h), then the power-off or reboot through logind. The reset's
// restart is logind's reboot too: the host's units stop in order.
#include <cstring>
#include <exception>

#include "linuxhost/bus.h"
#include "linuxhost/hypervisor.h"
#include "linuxhost/lazy_library.h"
#include "linuxhost/machine_stop.h"
#include "linuxhost/run_objects.h"
#include "platform/syslog.h"

namespace LinuxHost {
namespace {

// Calls logind's method with "interactive = false"; true when the call
// succeeded.
bool Logind(const char* method) {
    static constexpr char interface[] = "org.freedesktop.login1.Manager";
    const BusConnection bus = OpenSystemBus();
    if (!bus) return false;
    sd_bus_error error = SD_BUS_ERROR_NULL;
    const auto call = TESK_LAZY(kLibsystemd, sd_bus_call_method);
    const int r = call(bus.get(), "org.freedesktop.login1", "/org/freedesktop/login1", interface,
                       method, &error, nullptr, "b", 0);
    if (r < 0)
        Tesk::Platform::Log(LOG_ERR, "%s.%s failed: %s", interface, method,
                            error.message ? error.message : std::strerror(-r));
    else
        Tesk::Platform::Log(LOG_INFO, "%s.%s requested", interface, method);
    TESK_LAZY(kLibsystemd, sd_bus_error_free)(&error);
    return r >= 0;
}

// Stops the machines; false (logged) when some could not be stopped.
bool StopMachines(bool graceful) {
    if (!kLibvirt.Available()) return true;
    try {
        const auto hypervisor = ConnectHypervisor();
        return StopAllMachines(*hypervisor, graceful, MachineShutdownLimit());
    } catch (const std::exception& e) {
        Tesk::Platform::Log(LOG_ERR, "Stopping the virtual machines failed: %s", e.what());
        return false;
    }
}

class PowerControl : public HostCtl::Power::PowerControl {
public:
    void StopVirtualMachines(const std::string& user, bool graceful) const override {
        Tesk::Platform::Log(LOG_INFO, "Stopping the virtual machines %s for %s",
                            graceful ? "gracefully" : "by force", user.c_str());
        StopMachines(graceful);
    }
    bool PowerOffAllVirtualMachines() const override { return StopMachines(true); }
    bool PowerOffHost() const override { return Logind("PowerOff"); }
    bool RestartHost() const override { return Logind("Reboot"); }
    bool ForceRestartHost() const override { return Logind("Reboot"); }
};

}  // namespace

std::unique_ptr<HostCtl::Power::PowerControl> MakePowerControl() {
    return std::make_unique<PowerControl>();
}

}  // namespace LinuxHost
