// The host's local shell and its SSH server: whether each runs, switching it
// on or off, the shell's two time-outs and the restart that makes a running
// service take new time-outs. The interface only; a host backend
// (hostctl/backend.h) hands out the object.
#pragma once

#include <optional>
#include <string>

namespace HostCtl::Services {

// The two ways onto the host's own command line.
enum class Service { Shell, Ssh };

// The time-outs the shell and SSH share.
enum class ShellTimeout {
    Availability,  // how long both stay usable after they were switched on
    Idle,          // how long an idle shell session stays open
};

class ShellServices {
public:
    virtual ~ShellServices() = default;

    // Whether the service runs now. A host that cannot tell answers false;
    // nothing is logged or thrown.
    virtual bool IsRunning(Service service) const = 0;

    // Switches the service on (started now and at every boot) or off
    // (stopped, and not started at boot), acting as user. A start or stop
    // that the host's management refuses is tried once more through the
    // service itself; switching SSH on also opens the firewall for it when
    // its ruleset follows the service (switching off never closes it). Every
    // step that fails is logged and the next one still runs; nothing is
    // thrown, and a step that failed leaves its part as it was.
    virtual void Switch(Service service, bool on, const std::string& user) const = 0;

    // Restarts the service when it runs, so that it takes new time-outs; a
    // service that does not run stays as it is. The outcome is not reported.
    virtual void RestartIfRunning(Service service) const = 0;

    // The time-out in seconds (0: none). None when the host cannot tell; the
    // failure is logged.
    virtual std::optional<long> GetTimeoutSeconds(ShellTimeout timeout) const = 0;
    // Stores the time-out; running services keep the old one until they
    // restart. False when the host refused (logged); the time-out is then
    // unchanged.
    virtual bool SetTimeoutSeconds(ShellTimeout timeout, unsigned long long seconds) const = 0;
};

}  // namespace HostCtl::Services
