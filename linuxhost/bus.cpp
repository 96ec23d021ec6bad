#include "linuxhost/bus.h"

#include <cstring>

#include "linuxhost/lazy_library.h"
#include "platform/syslog.h"

namespace LinuxHost {

void BusCloser::operator()(sd_bus* bus) const {
    TESK_LAZY(kLibsystemd, sd_bus_flush_close_unref)(bus);
}

BusConnection OpenSystemBus() {
    const auto open = TESK_LAZY(kLibsystemd, sd_bus_open_system);
    if (open == nullptr) return nullptr;
    sd_bus* bus = nullptr;
    const int r = open(&bus);
    if (r < 0) {
        Tesk::Platform::Log(LOG_ERR, "Connecting to the system bus failed: %s", std::strerror(-r));
        return nullptr;
    }
    return BusConnection(bus);
}

}  // namespace LinuxHost
