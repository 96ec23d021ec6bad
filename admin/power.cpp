// The progress screens that take the host down: the virtual machines are
// powered off (gracefully or by force), then the power command runs. Once it
// has started the screen stays and every key is discarded.
#include "admin/power.h"

#include <cstdint>
#include <functional>

#include "admin/acting_user.h"
#include "host/runner.h"
#include "platform/waiting.h"
#include "ui/progress_dialog.h"
#include "ui/string_ids.h"
#include "ui/strings.h"

namespace Tesk {
namespace {

// stopMachines runs first; powerCommand answers false when the command could
// not be started.
bool TakeHostDown(Window* opener, std::uint32_t titleId, std::uint32_t messageId,
                  const std::function<void()>& stopMachines,
                  const std::function<bool()>& powerCommand) {
    ProgressDialog progress(opener, {70, 10, 7}, Str(titleId), Str(messageId),
                            [&](ProgressDialog& p) -> int {
                                stopMachines();
                                // A command cut short because the host is ending the console is
                                // no failure: the screen stays until the end.
                                if (!powerCommand() && !Platform::QuitRequested()) return 0;
                                p.holdScreen();
                            });
    return Run(progress) != 0;
}

bool TakeHostDown(Window* opener, std::uint32_t titleId, std::uint32_t messageId,
                  const char* command, bool graceful) {
    return TakeHostDown(
        opener, titleId, messageId, [graceful] { PowerOffVms(ActingUser(), graceful); },
        [command] { return RunShellCommand(command) != -1; });
}

}  // namespace

bool ShutDownHost(Window* opener, bool graceful) {
    return TakeHostDown(opener, StrId::ShutDownHost, StrId::ShutdownInProgress, "poweroff",
                        graceful);
}

bool RestartHost(Window* opener, bool graceful) {
    return TakeHostDown(opener, StrId::RestartHost, StrId::RestartInProgress, "reboot", graceful);
}

bool RestartHost(Window* opener, const HostContext& host, bool graceful) {
    const auto power = host.backend.GetPowerControl();
    return TakeHostDown(
        opener, StrId::RestartHost, StrId::RestartInProgress,
        [&] { power->StopVirtualMachines(host.user, graceful); },
        [&] { return power->RestartHost(); });
}

}  // namespace Tesk
