// "Restore qDS": a new host-local port on the management interface's
// distributed switch, with the VLAN, blocking and uplinks the administrator
// gives and every other setting of the interface's current port, and the
// management interface moved onto it.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hostctl/network.h"
#include "ui/form_dialog.h"
#include "ui/input_items.h"

namespace Tesk {

// run(): 1 when the management interface was moved, 0 when refused,
// cancelled or failed. Only a distributed switch of the host's own kind can
// be repaired; every failure is logged and shown.
class RestoreqDSDialog : public FormDialog {
public:
    explicit RestoreqDSDialog(Window* opener);
    int run() override;

private:
    // Reads the management interface, its switch and port; false (said) when
    // the repair cannot be done.
    bool locate();
    // The uplink ports chosen; none when the administrator went back.
    std::optional<std::vector<std::string>> chooseUplinks();
    bool apply(std::uint16_t vlanId, const std::vector<std::string>& uplinks);
    void fail(std::uint32_t textId);

    NumericInputItem* vlan_ = nullptr;
    CheckItem* unblock_ = nullptr;

    std::unique_ptr<HostCtl::Network::ZrkNic> management_;
    std::unique_ptr<HostCtl::Network::QdsSwitch> qds_;
    std::string port_;
    HostCtl::Network::QdsPortSettings current_;
    std::map<std::string, std::string> uplinkMap_;  // physical NIC to uplink port
};

}  // namespace Tesk
