// The progress screens that take the host down: the virtual machines are
// powered off (gracefully or by force), then the host's power-off or restart
// starts. Once it has started the screen stays and every key is discarded.
#include "admin/power.h"

#include <cstdint>

#include "host/host_context.h"
#include "hostctl/power.h"
#include "platform/waiting.h"
#include "ui/progress_dialog.h"
#include "ui/string_ids.h"
#include "ui/strings.h"

namespace Tesk {
namespace {

using PowerStep = bool (HostCtl::Power::PowerControl::*)() const;

bool TakeHostDown(Window* opener, const HostContext& host, std::uint32_t titleId,
                  std::uint32_t messageId, PowerStep step, bool graceful) {
    ProgressDialog progress(opener, {70, 10, 7}, Str(titleId), Str(messageId),
                            [&](ProgressDialog& p) -> int {
                                const auto power = host.backend.GetPowerControl();
                                power->StopVirtualMachines(host.user, graceful);
                                // A step cut short because the host is ending the console is
                                // no failure: the screen stays until the end.
                                if (!((*power).*step)() && !Platform::QuitRequested()) return 0;
                                p.holdScreen();
                            });
    return Run(progress) != 0;
}

}  // namespace

bool ShutDownHost(Window* opener, const HostContext& host, bool graceful) {
    return TakeHostDown(opener, host, StrId::ShutDownHost, StrId::ShutdownInProgress,
                        &HostCtl::Power::PowerControl::PowerOffHost, graceful);
}

bool RestartHost(Window* opener, const HostContext& host, bool graceful) {
    return TakeHostDown(opener, host, StrId::RestartHost, StrId::RestartInProgress,
                        &HostCtl::Power::PowerControl::RestartHost, graceful);
}

}  // namespace Tesk
