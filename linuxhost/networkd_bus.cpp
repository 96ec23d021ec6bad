#include "linuxhost/networkd_bus.h"
#include "linuxhost/fail.h"

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

}  // namespace

LinkStates::LinkStates() : bus_(OpenSystemBus()) {
    const auto match = TESK_LAZY(kLibsystemd, sd_bus_match_signal);
    if (!bus_ || match == nullptr) return;
    // Every property change of networkd's objects: the link's state is one.
    if (match(bus_.get(), &match_, "org.freedesktop.network1", nullptr,
              "org.freedesktop.DBus.Properties", "PropertiesChanged", nullptr, nullptr) < 0)
        match_ = nullptr;
}

LinkStates::~LinkStates() {
    if (match_ != nullptr) TESK_LAZY(kLibsystemd, sd_bus_slot_unref)(match_);
}

std::string LinkStates::State(int ifindex) {
    const auto call = TESK_LAZY(kLibsystemd, sd_bus_call_method);
    const auto read = TESK_LAZY(kLibsystemd, sd_bus_message_read);
    const auto property = TESK_LAZY(kLibsystemd, sd_bus_get_property_string);
    const auto freeError = TESK_LAZY(kLibsystemd, sd_bus_error_free);
    const auto unref = TESK_LAZY(kLibsystemd, sd_bus_message_unref);
    if (!bus_ || !call || !read || !property || !freeError || !unref) return {};
    sd_bus_error error = SD_BUS_ERROR_NULL;
    sd_bus_message* reply = nullptr;
    const char* name = nullptr;
    const char* path = nullptr;
    char* state = nullptr;
    std::string result;
    if (call(bus_.get(), "org.freedesktop.network1", "/org/freedesktop/network1",
             "org.freedesktop.network1.Manager", "GetLinkByIndex", &error, &reply, "i",
             ifindex) >= 0 &&
        read(reply, "so", &name, &path) >= 0 &&
        property(bus_.get(), "org.freedesktop.network1", path, "org.freedesktop.network1.Link",
                 "AdministrativeState", &error, &state) >= 0) {
        result = state;
        std::free(state);
    }
    freeError(&error);
    unref(reply);
    return result;
}

int LinkStates::Descriptor() const {
    const auto fd = TESK_LAZY(kLibsystemd, sd_bus_get_fd);
    return bus_ && fd != nullptr ? fd(bus_.get()) : -1;
}

short LinkStates::Events() const {
    const auto events = TESK_LAZY(kLibsystemd, sd_bus_get_events);
    const int wanted = bus_ && events != nullptr ? events(bus_.get()) : 0;
    return static_cast<short>(wanted > 0 ? wanted : 0);
}

bool LinkStates::Drain() {
    const auto process = TESK_LAZY(kLibsystemd, sd_bus_process);
    if (!bus_ || process == nullptr) return false;
    bool arrived = false;
    while (process(bus_.get(), nullptr) > 0) arrived = true;
    return arrived;
}

bool Configuring(const std::string& state) {
    return state == "pending" || state == "initialized" || state == "configuring";
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
