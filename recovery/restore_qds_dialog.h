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

#include "host/host_context.h"
#include "hostctl/network.h"
#include "ui/form_dialog.h"
#include "ui/input_items.h"

namespace Tesk {

// What the repair works on: the management interface, its distributed
// switch and port, the port's settings and the switch's uplinks.
struct QdsRepairTarget {
    std::unique_ptr<HostCtl::Network::ZrkNic> management;
    std::unique_ptr<HostCtl::Network::QdsSwitch> qds;
    std::string port;
    HostCtl::Network::QdsPortSettings current;
    std::map<std::string, std::string> uplinks;  // physical NIC to uplink port
};

// Finds the target; none, after saying why over opener, when the interface is
// not on a distributed switch of the host's own kind or the host fails.
std::optional<QdsRepairTarget> LocateQdsRepair(Window* opener, const HostContext& host);

// The properties form, then the uplink choice, then the repair. run(): 1 when
// the management interface was moved, 0 when cancelled or failed (said).
class RestoreqDSDialog : public FormDialog {
public:
    RestoreqDSDialog(Window* opener, QdsRepairTarget target);
    int run() override;

private:
    // The uplink ports chosen; none when the administrator went back.
    std::optional<std::vector<std::string>> chooseUplinks();
    bool apply(std::uint16_t vlanId, const std::vector<std::string>& uplinks);
    void fail(std::uint32_t textId);

    NumericInputItem* vlan_ = nullptr;
    CheckItem* unblock_ = nullptr;
    QdsRepairTarget target_;
};

// The whole repair over opener: the target found, then the dialog.
int RestoreQds(Window* opener, const HostContext& host);

}  // namespace Tesk
