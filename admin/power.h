// Taking the host down: the progress screens that power off the virtual
// machines (gracefully or by force) and run the power command. Once the
// command has started they never return: the screen stays up and every key is
// discarded until the machine stops (the idle timeout still applies).
#pragma once

#include "host/host_context.h"

namespace Tesk {

class Window;

// "Shut Down Host": "poweroff". False when the command cannot be started.
bool ShutDownHost(Window* opener, bool graceful);
// "Restart Host": "reboot". False when the command cannot be started.
bool RestartHost(Window* opener, bool graceful);
// "Restart Host" through the host's power control, the machines stopped as
// host.user. False when the restart cannot be started.
bool RestartHost(Window* opener, const HostContext& host, bool graceful);

}  // namespace Tesk
