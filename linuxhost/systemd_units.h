// The host's systemd units over the system bus: start, stop, restart,
// enable, disable, their state, and reloading the unit files. Each call logs
// its own failure; a Systemd object holds one bus connection and belongs to
// the thread that made it.
#pragma once

#include <string>

#include "linuxhost/bus.h"

namespace LinuxHost {

class Systemd {
public:
    // Connects to the system bus (a failure is logged; every call then fails).
    Systemd();

    bool Start(const std::string& unit);
    bool Stop(const std::string& unit);
    bool Restart(const std::string& unit);
    // Enables or disables the unit's start at boot.
    bool Enable(const std::string& unit, bool enable);
    // The unit's ActiveState ("active", "inactive", ...); empty when systemd
    // cannot tell (logged).
    std::string ActiveState(const std::string& unit);
    // Makes systemd read changed unit files.
    bool Reload();

private:
    bool Job(const char* method, const std::string& unit);

    BusConnection bus_;
};

}  // namespace LinuxHost
