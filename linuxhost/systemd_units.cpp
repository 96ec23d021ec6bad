#include "linuxhost/systemd_units.h"

#include <cstdlib>
#include <cstring>

#include "linuxhost/lazy_library.h"
#include "platform/syslog.h"

namespace LinuxHost {
namespace {

constexpr const char kDestination[] = "org.freedesktop.systemd1";
constexpr const char kManagerPath[] = "/org/freedesktop/systemd1";
constexpr const char kManager[] = "org.freedesktop.systemd1.Manager";

// An error and a reply that free themselves.
struct Call {
    sd_bus_error error = SD_BUS_ERROR_NULL;
    sd_bus_message* reply = nullptr;
    ~Call() {
        TESK_LAZY(kLibsystemd, sd_bus_error_free)(&error);
        if (reply != nullptr) TESK_LAZY(kLibsystemd, sd_bus_message_unref)(reply);
    }
    // Logs a failed call (r < 0); true when it succeeded.
    bool Check(int r, const char* what, const std::string& unit) const {
        if (r >= 0) return true;
        const char* why = error.message ? error.message : std::strerror(-r);
        Tesk::Platform::Log(LOG_ERR, "systemd: %s %s failed: %s", what, unit.c_str(), why);
        return false;
    }
};

}  // namespace

Systemd::Systemd() : bus_(OpenSystemBus()) {}

bool Systemd::Job(const char* method, const std::string& unit) {
    if (!bus_) return false;
    Call call;
    const int r = TESK_LAZY(kLibsystemd, sd_bus_call_method)(
        bus_.get(), kDestination, kManagerPath, kManager, method, &call.error, &call.reply, "ss",
        unit.c_str(), "replace");
    return call.Check(r, method, unit);
}

bool Systemd::Start(const std::string& unit) {
    return Job("StartUnit", unit);
}

bool Systemd::Stop(const std::string& unit) {
    return Job("StopUnit", unit);
}

bool Systemd::Restart(const std::string& unit) {
    return Job("RestartUnit", unit);
}

bool Systemd::Enable(const std::string& unit, bool enable) {
    if (!bus_) return false;
    Call call;
    const auto method = TESK_LAZY(kLibsystemd, sd_bus_call_method);
    // Persistent (not runtime only); enabling replaces links that point elsewhere.
    const int r = enable
                      ? method(bus_.get(), kDestination, kManagerPath, kManager, "EnableUnitFiles",
                               &call.error, &call.reply, "asbb", 1, unit.c_str(), 0, 1)
                      : method(bus_.get(), kDestination, kManagerPath, kManager, "DisableUnitFiles",
                               &call.error, &call.reply, "asb", 1, unit.c_str(), 0);
    return call.Check(r, enable ? "EnableUnitFiles" : "DisableUnitFiles", unit);
}

std::string Systemd::ActiveState(const std::string& unit) {
    if (!bus_) return {};
    Call call;
    int r = TESK_LAZY(kLibsystemd, sd_bus_call_method)(bus_.get(), kDestination, kManagerPath,
                                                       kManager, "GetUnit", &call.error,
                                                       &call.reply, "s", unit.c_str());
    // A unit systemd has not loaded is not running.
    if (r < 0 && call.error.name != nullptr &&
        std::strcmp(call.error.name, "org.freedesktop.systemd1.NoSuchUnit") == 0)
        return "inactive";
    const char* path = nullptr;
    if (r >= 0) r = TESK_LAZY(kLibsystemd, sd_bus_message_read)(call.reply, "o", &path);
    if (!call.Check(r, "GetUnit", unit)) return {};
    Call property;
    char* state = nullptr;
    r = TESK_LAZY(kLibsystemd, sd_bus_get_property_string)(bus_.get(), kDestination, path,
                                                           "org.freedesktop.systemd1.Unit",
                                                           "ActiveState", &property.error, &state);
    if (!property.Check(r, "ActiveState of", unit)) return {};
    std::string text = state;
    ::free(state);
    return text;
}

bool Systemd::Reload() {
    if (!bus_) return false;
    Call call;
    const int r = TESK_LAZY(kLibsystemd, sd_bus_call_method)(
        bus_.get(), kDestination, kManagerPath, kManager, "Reload", &call.error, &call.reply, "");
    return call.Check(r, "Reload", "the units");
}

}  // namespace LinuxHost
