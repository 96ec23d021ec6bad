// Leaving the management network window with changes when the host may have
// changed since the window read it (another console applied its own changes,
// or someone worked on the host from elsewhere). The host is read again just
// before anything is written:
//  - the fields this window did not change take the host's current values,
//    so they are written back as the host has them and nothing another
//    console set is undone;
//  - when a field this window changed was also changed on the host (to a
//    value other than this window's), a dialog names each such field with the
//    host's value and this window's, and the administrator chooses: write this
//    window's values over the host's, or write nothing and go back to the
//    window, which then shows the host's values for those fields.
#pragma once

#include "host/host_context.h"
#include "network/network_fields.h"
#include "network/pending_config.h"

namespace Tesk {

class Window;

// Brings pending in line with the host as described above; `read` is what the
// window read when it opened (or last settled), and becomes what the host
// holds now. True: write pending now. False: write nothing and stay in the
// window. When the host cannot be read again (logged), pending is written as
// it is.
bool SettleWithHost(Window* opener, const HostContext& host, PendingNetworkConfig& pending,
                    NetworkValues& read);

}  // namespace Tesk
