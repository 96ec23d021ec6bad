// Testing the management network: the set-up dialog (three addresses to
// ping and a host name to resolve, pre-filled from the host) and the run
// that shows each step's outcome while it can still be interrupted.
#pragma once

#include <array>
#include <memory>
#include <string>

#include "host/host_context.h"
#include "hostctl/network_types.h"
#include "ui/form_dialog.h"
#include "ui/progress_dialog.h"

namespace Tesk {

class InputItem;

// Set-up: "Ping Address #1..#3" with the default gateway and the first two
// name servers, "Resolve Hostname" with the host name. <Enter> checks the
// fields (an address that is not one names its field in a message and the
// form stays) and runs the test with the non-empty ones; <Esc> leaves.
class TestDialog : public FormDialog {
public:
    TestDialog(Window* opener, const HostContext& host);

protected:
    KeyResult accept() override;

private:
    const HostContext& host_;
    std::array<InputItem*, 3> addresses_{};
    InputItem* hostname_ = nullptr;
};

// The run: pings each given address (null: skipped) in order, then resolves
// the host name when there is one, each in its own worker, polling for its
// outcome every 10 ms. <Esc> ends the dialog at once (result 0) and leaves a
// running worker to finish on its own; otherwise "Done." and <Enter> (1).
class RunTestDialog : public ProgressDialog {
public:
    using Targets = std::array<std::unique_ptr<HostCtl::Network::IpAddress>, 3>;
    RunTestDialog(Window* opener, const HostContext& host, Targets targets, std::string hostname,
                  std::string interfaceName);

private:
    int work();

    const HostContext& host_;
    Targets targets_;
    std::string hostname_;
    std::string interfaceName_;
};

// The address as the test pings it: IPv6 link-local addresses get the
// management interface as their scope ("fe80::1%zrk0").
std::string TestTargetText(const HostCtl::Network::IpAddress& address,
                           const std::string& interfaceName);

}  // namespace Tesk
