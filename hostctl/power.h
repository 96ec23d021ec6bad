// Taking the host and its virtual machines down. The interface only; a host
// backend (hostctl/backend.h) hands out the object.
#pragma once

#include <string>

namespace HostCtl::Power {

class PowerControl {
public:
    virtual ~PowerControl() = default;

    // Before the host goes down: the host's own stop order for its virtual
    // machines, acting as user, then every machine still running is stopped,
    // gracefully or by force. What fails is logged; nothing is thrown.
    virtual void StopVirtualMachines(const std::string& user, bool graceful) const = 0;
    // Every running virtual machine, gracefully, at once; true when the host
    // reports them all off.
    virtual bool PowerOffAllVirtualMachines() const = 0;

    // Start taking the host down; false when that could not be started (a
    // request cut short because the console is ending also answers false).
    virtual bool PowerOffHost() const = 0;
    virtual bool RestartHost() const = 0;
    // Restarts at once, without stopping the host's services first.
    virtual bool ForceRestartHost() const = 0;
};

}  // namespace HostCtl::Power
