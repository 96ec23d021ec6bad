// Switching the host's local shell and its SSH server on and off, as the
// troubleshooting window does: the host switches the service as the context's
// user (hostctl/shell_services.h says what that takes and how failures are
// logged), and the window's flag is inverted whatever the host answered.
#pragma once

#include "host/host_context.h"
#include "hostctl/shell_services.h"

namespace Tesk {

// Inverts *enabled, switches the service to it and writes the user's log
// line ("User root enabled SSH").
void SwitchService(const HostContext& host, HostCtl::Services::Service service, bool* enabled);

}  // namespace Tesk
