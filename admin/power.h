// Taking the host down: the progress screens that power off the virtual
// machines (gracefully or by force) and start the host's power-off or
// restart. Once that has started they never return: the screen stays up and
// every key is discarded until the machine stops (the idle timeout still
// applies).
#pragma once

#include "host/host_context.h"

namespace Tesk {

class Window;
struct HostContext;

// "Shut Down Host": the machines are stopped as the context's user, then the host
// powers off. False when the power-off cannot be started.
bool ShutDownHost(Window* opener, const HostContext& host, bool graceful);
// "Restart Host": the same, then the host restarts.
bool RestartHost(Window* opener, const HostContext& host, bool graceful);

}  // namespace Tesk
