// "Restore Standard Switch": the management network and the uplinks of its
// switch moved onto a new standard switch, for a host whose distributed
// switch has cut it off.
#pragma once

#include <string>

#include "host/host_context.h"
#include "hostctl/network.h"
#include "ui/confirm_dialog.h"

namespace Tesk {

// Asks with <F11> / <Esc>. run(): 1 after <F11> (whatever the move's outcome,
// which goes to the log), 0 on <Esc>.
class SafeModeNetworkDialog : public ConfirmDialog {
public:
    SafeModeNetworkDialog(Window* opener, const HostContext& host);
    int run() override;

private:
    const HostContext& host_;
};

// Builds the next free "zSwitch<n>" (from 0) with the next free "Management
// Network<n>" (from 1), disables every Zerkel NIC, connects the management
// NIC to the new group, moves every uplink of its old switch and enables the
// management NIC again. Logs its failures; what was done before a failure
// stays done.
void EnableSafeModeNetworking(const HostContext& host);

// Takes the uplink from every standard and distributed switch and makes it an
// active uplink of vswitch. A failure is logged and not passed on.
void MoveUplinkToSwitch(const HostContext& host, const HostCtl::Network::Portset& vswitch,
                        const std::string& uplink);

}  // namespace Tesk
