// Applying the management network: the confirmation asked when the
// administrator leaves the management network window with changes, and the
// procedure that writes the pending configuration to the host in its fixed
// order (adapters, VLAN, IPv4, IPv6, DNS mode, the interface's IP settings,
// gateways, DHCP renewal, VLAN restart, host name, name servers, suffixes,
// saving, the IPv6 restart question, the management service refresh).
#pragma once

#include <functional>

#include "host/host_context.h"
#include "network/pending_config.h"

namespace Tesk {

class Window;

// "Apply changes and restart management network?" (or "... reboot host?" when
// ipv6Switched). What the administrator answered.
enum class ApplyAnswer { Cancel, Yes, No };
ApplyAnswer AskToApplyNetworkChanges(Window* opener, bool ipv6Switched);

// Writes pending to the host. Each failing group of host calls is logged and
// shown in an error dialog over opener; what was written before stays written.
// summaryChanged runs when the interface's IPv4 settings were rewritten (the
// window then rebuilds its summary and redraws). The host is restarted, as
// host.user, when IPv6 was switched on or off; beforeRestart runs just before
// the restart notice, when everything else is written.
void ApplyNetworkChanges(Window* opener, const HostContext& host, PendingNetworkConfig& pending,
                         const std::function<void()>& summaryChanged,
                         const std::function<void()>& beforeRestart = nullptr);

}  // namespace Tesk
