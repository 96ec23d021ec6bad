// Waiting for a management network change to be the kernel's: after our files
// were written and networkd told, the link must carry what the change leaves
// on it (its static addresses and no others, its gateways) and networkd must
// be done with the link. networkd's state alone says "configured" from the
// change before until it starts on the new one, so the kernel decides.
#pragma once

#include <chrono>
#include <string>

#include "linuxhost/netlink.h"
#include "linuxhost/networkd_config.h"

namespace LinuxHost {

// What of config the kernel does not show on link yet ("192.168.77.20/24",
// "gateway 192.168.77.1", "no other IPv4 address"); empty when nothing.
// What networkd learns (leases, router advertisements) is not waited for
// beyond a DHCP address being there.
std::string NotYetApplied(const ManagementConfig& config, const KernelNet& net,
                          const LinkFact& link);

// Waits, on netlink and networkd's bus notifications, until config is
// applied as above; false (and a log line saying what is missing) when the
// limit runs out first.
bool WaitApplied(const ManagementConfig& config,
                 std::chrono::milliseconds limit = std::chrono::seconds(10));

}  // namespace LinuxHost
