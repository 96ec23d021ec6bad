#include "linuxhost/networkd_bus.h"
#include "linuxhost/fail.h"

#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "hostctl/exception.h"
#include "linuxhost/bus.h"
#include "linuxhost/lazy_library.h"
#include "platform/syslog.h"

namespace LinuxHost::Networkd {
namespace {

// Calls method of networkd's manager with no argument or one link index.
void Call(const char* method, const char* signature, int ifindex) {
    BusConnection bus = OpenSystemBus();
    if (!bus) Fail(std::string("Asking systemd-networkd to ") + method + " failed: no system bus");
    const auto call = TESK_LAZY(kLibsystemd, sd_bus_call_method);
    const auto freeError = TESK_LAZY(kLibsystemd, sd_bus_error_free);
    const auto unref = TESK_LAZY(kLibsystemd, sd_bus_message_unref);
    if (call == nullptr || freeError == nullptr || unref == nullptr)
        Fail(std::string("Asking systemd-networkd to ") + method + " failed: no libsystemd");
    sd_bus_error error = SD_BUS_ERROR_NULL;
    sd_bus_message* reply = nullptr;
    const int r =
        *signature == '\0'
            ? call(bus.get(), "org.freedesktop.network1", "/org/freedesktop/network1",
                   "org.freedesktop.network1.Manager", method, &error, &reply, "")
            : call(bus.get(), "org.freedesktop.network1", "/org/freedesktop/network1",
                   "org.freedesktop.network1.Manager", method, &error, &reply, signature, ifindex);
    std::string why;
    if (r < 0) why = error.message != nullptr ? error.message : std::strerror(-r);
    freeError(&error);
    unref(reply);
    if (r < 0) Fail(std::string("systemd-networkd refused ") + method + ": " + why);
}

// networkd's state of the link ("configuring", "configured", ...); empty
// when it cannot be asked.
std::string AdministrativeState(int ifindex) {
    BusConnection bus = OpenSystemBus();
    const auto call = TESK_LAZY(kLibsystemd, sd_bus_call_method);
    const auto read = TESK_LAZY(kLibsystemd, sd_bus_message_read);
    const auto property = TESK_LAZY(kLibsystemd, sd_bus_get_property_string);
    const auto freeError = TESK_LAZY(kLibsystemd, sd_bus_error_free);
    const auto unref = TESK_LAZY(kLibsystemd, sd_bus_message_unref);
    if (!bus || !call || !read || !property || !freeError || !unref) return {};
    sd_bus_error error = SD_BUS_ERROR_NULL;
    sd_bus_message* reply = nullptr;
    const char* name = nullptr;
    const char* path = nullptr;
    char* state = nullptr;
    std::string result;
    if (call(bus.get(), "org.freedesktop.network1", "/org/freedesktop/network1",
             "org.freedesktop.network1.Manager", "GetLinkByIndex", &error, &reply, "i",
             ifindex) >= 0 &&
        read(reply, "so", &name, &path) >= 0 &&
        property(bus.get(), "org.freedesktop.network1", path, "org.freedesktop.network1.Link",
                 "AdministrativeState", &error, &state) >= 0) {
        result = state;
        std::free(state);
    }
    freeError(&error);
    unref(reply);
    return result;
}

}  // namespace

void WaitConfigured(int ifindex) {
    constexpr int kTries = 100;  // 10 s
    for (int i = 0; i < kTries; ++i) {
        const std::string state = AdministrativeState(ifindex);
        if (state != "pending" && state != "initialized" && state != "configuring") return;
        ::usleep(100 * 1000);
    }
    Tesk::Platform::Log(LOG_WARNING, "systemd-networkd is still configuring link %d", ifindex);
}

void Reload() {
    Call("Reload", "", 0);
}

void Reconfigure(int ifindex) {
    Call("ReconfigureLink", "i", ifindex);
}

void ForceRenew(int ifindex) {
    Call("ForceRenewLink", "i", ifindex);
}

}  // namespace LinuxHost::Networkd
