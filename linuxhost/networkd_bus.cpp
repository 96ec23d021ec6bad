#include "linuxhost/networkd_bus.h"
#include "linuxhost/fail.h"

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

}  // namespace

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
