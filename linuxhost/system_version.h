// The system-version node of a Linux host, which the welcome screen's product
// line and the welcome message's variables read: the distribution's name and
// version from /etc/os-release (NAME, VERSION_ID; /usr/lib/os-release when
// /etc has none), the running kernel's release and build number from
// /proc/sys/kernel/osrelease and /proc/sys/kernel/version ("#1 SMP ..." gives
// "1"), all under the host root.
#pragma once

#include "platform/zsi.h"

namespace LinuxHost {

// The node as read now. A field the host does not tell is empty; a missing
// os-release gives the product name "Linux".
ZSI_SystemVersion ReadSystemVersion();

}  // namespace LinuxHost
