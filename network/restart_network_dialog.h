// Restarting the management network: the confirmation (<F11> restarts,
// <Esc> leaves) and the restart itself, which takes the management interface
// down and up again and shows the addresses it has afterwards.
#pragma once

#include <string>
#include <vector>

#include "hostctl/network.h"
#include "ui/confirm_dialog.h"
#include "ui/progress_dialog.h"

namespace Tesk {

class RestartNetworkDialog : public ConfirmDialog {
public:
    RestartNetworkDialog(Window* opener, HostCtl::Network::ZrkNic& nic);
    // 1 when the restart ran, 0 on <Esc>.
    int run() override;

private:
    HostCtl::Network::ZrkNic& nic_;
};

class DoRestartNetworkDialog : public ProgressDialog {
public:
    DoRestartNetworkDialog(Window* opener, HostCtl::Network::ZrkNic& nic);

private:
    int work();
    HostCtl::Network::ZrkNic& nic_;
};

// The progress text after the interface came up again: the IPv4 address
// when it is static, then the static IPv6 addresses (the first address type)
// whose scope is not link-local (two and "   ..." when there are more than
// three).
std::string RestartAddressLines(const HostCtl::Network::IpConfig& now, bool ipv4Dhcp);

}  // namespace Tesk
