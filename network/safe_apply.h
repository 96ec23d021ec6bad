// Applying the management network so that a change that cuts the host off
// undoes itself: the values are checked before they are written, the change
// is recorded with what it replaces, the host is checked after it, and when a
// check fails the administrator keeps the change or it is put back, at the
// end of a count or at the next start of the console, whichever comes first.
#pragma once

#include <functional>

#include "host/host_context.h"
#include "network/pending_config.h"

namespace Tesk {

class Window;

// The advanced option with the count in seconds (30 to 600, default 60).
inline constexpr char kRevertTimeoutOption[] = "/UserVars/TeskNetworkRevertTimeOut";
inline constexpr int kRevertTimeoutDefault = 60;
inline constexpr int kRevertTimeoutMin = 30;
inline constexpr int kRevertTimeoutMax = 600;

// The count the host's advanced option asks for; a missing, unreadable or
// out-of-range value gives the default (logged).
int RevertTimeoutSeconds(const HostCtl::Backend& backend);

// Writes pending as ApplyNetworkChanges does, with the checks before and
// after it. False when the administrator chose to go back to the window and
// correct the settings (nothing was written then).
bool SafelyApplyNetworkChanges(Window* opener, const HostContext& host,
                               PendingNetworkConfig& pending,
                               const std::function<void()>& summaryChanged);

}  // namespace Tesk
