// The troubleshooting options: switching the local shell and SSH, their
// timeouts, the console's idle timeout and the management agents' restart.
// The services' states are read once, when the window is made.
#pragma once

#include <functional>

#include "host/host_context.h"
#include "ui/pane_window.h"

namespace Tesk {

// The console's own idle timeout, in seconds: how to read it and how to make
// a new value take effect at once.
struct IdleTimeoutAccess {
    std::function<int()> current;
    std::function<void(int)> rearm;
};

class TroubleShootingWindow : public PaneWindow {
public:
    // host: the host and the logged-in user its services are switched as.
    TroubleShootingWindow(Window* opener, const HostContext& host, IdleTimeoutAccess idle);

private:
    // The switches' names and the timeouts row's state follow the services.
    void showSwitches();

    int shellRow_ = -1;
    int sshRow_ = -1;
    int timeoutsRow_ = -1;

    const HostContext& host_;
    IdleTimeoutAccess idle_;
    bool shellEnabled_;
    bool sshEnabled_;
};

}  // namespace Tesk
