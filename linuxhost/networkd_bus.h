// systemd-networkd's bus interface (org.freedesktop.network1): read the
// configuration files again, configure a link again from them, renew its
// DHCP lease. Each call opens its own connection (linuxhost/bus.h) and
// throws HostCtl::Lib::HostCtlException (logged) when networkd cannot be
// asked or refuses.
#pragma once

#include <string>

#include "linuxhost/bus.h"

namespace LinuxHost::Networkd {

void Reload();
void Reconfigure(int ifindex);
void ForceRenew(int ifindex);

// networkd's own account of its links, on a connection of its own that is
// told when a link's state changes (PropertiesChanged), so that a caller can
// wait for the change with poll() rather than ask again and again. Without a
// bus or libsystemd every state is unknown (empty) and Descriptor() is -1.
class LinkStates {
public:
    LinkStates();
    ~LinkStates();
    LinkStates(const LinkStates&) = delete;
    LinkStates& operator=(const LinkStates&) = delete;

    // "pending", "configuring", "configured", "failed", ...; empty when
    // networkd does not know the link or cannot be asked.
    std::string State(int ifindex);
    // Readable when something arrived; the poll() events the bus waits for.
    int Descriptor() const;
    short Events() const;
    // Takes in what arrived (the notifications only wake the caller); true
    // when something had, also during State().
    bool Drain();

private:
    BusConnection bus_;
    sd_bus_slot* match_ = nullptr;
};

// Whether networkd is still at work on a link in this state.
bool Configuring(const std::string& state);

}  // namespace LinuxHost::Networkd
