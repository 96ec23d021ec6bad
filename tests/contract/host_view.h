// What a contract test compares to see that a host is unchanged: everything
// the HostCtl interfaces can read of it, as lines of text (so a difference
// shows as one).
#pragma once

#include <functional>
#include <string>

#include "hostctl/backend.h"

namespace TeskContract {

using HostViewer = std::function<std::string(const HostCtl::Backend&)>;

// The network (NICs, switches, port groups, Zerkel NICs with their
// configuration and connection, routing, DNS), the keyboard layout, the
// advanced option "/UserVars/TeskTimeOut", the smart-card readers and
// whether virtual machines run. A domain with more to see appends its own
// view to this one.
std::string HostView(const HostCtl::Backend& host);

}  // namespace TeskContract
