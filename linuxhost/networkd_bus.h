// systemd-networkd's bus interface (org.freedesktop.network1): read the
// configuration files again, configure a link again from them, renew its
// DHCP lease. Each call opens its own connection (linuxhost/bus.h) and
// throws HostCtl::Lib::HostCtlException (logged) when networkd cannot be
// asked or refuses.
#pragma once

namespace LinuxHost::Networkd {

void Reload();
void Reconfigure(int ifindex);
void ForceRenew(int ifindex);
// Waits (a few seconds at most) until networkd is no longer configuring the
// link, so that a change just written is the kernel's when this returns; a
// link networkd does not know, or a networkd that cannot be asked, is not
// waited for.
void WaitConfigured(int ifindex);

}  // namespace LinuxHost::Networkd
