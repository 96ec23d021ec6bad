// Connections to the host's system bus (systemd, logind, networkd,
// resolved). DBUS_SYSTEM_BUS_ADDRESS points them at another bus (the lab's,
// a test's stand-ins). A connection belongs to one thread; each caller opens
// its own when it needs one, never before the first frame. libsystemd is
// loaded at the first connection (linuxhost/lazy_library.h).
#pragma once

#include <systemd/sd-bus.h>

#include <memory>

namespace LinuxHost {

struct BusCloser {
    void operator()(sd_bus* bus) const;
};
using BusConnection = std::unique_ptr<sd_bus, BusCloser>;

// A new connection to the system bus; null (and a log line naming the error)
// when none can be made or libsystemd cannot be loaded.
BusConnection OpenSystemBus();

}  // namespace LinuxHost
