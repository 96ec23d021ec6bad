// The management interface as the menu's network entries see it: found once
// per menu and kept in its context, read again when the host has changed it
// since.
#pragma once

#include "hostctl/network.h"

namespace Tesk {

struct MenuContext;

// Null when the host has no management interface (or cannot say).
HostCtl::Network::ZrkNic* MenuManagementInterface(MenuContext& context);

// Whether the management interface exists and is usable (enabled, connected
// and up), asked once per menu; a host failure is logged and counts as not
// usable.
bool ManagementInterfaceUsable(MenuContext& context);

}  // namespace Tesk
