// The standard-switch restore: the dialog and the move itself.
#include "recovery/safe_mode_network.h"

#include <syslog.h>

#include "host/recorded_change.h"
#include "hostctl/exception.h"
#include "platform/syslog.h"
#include "ui/footers.h"
#include "ui/string_ids.h"

namespace Tesk {

namespace HN = HostCtl::Network;
using HostCtl::Lib::HostCtlException;

namespace {

// The uplinks of the switch the NIC is connected to, by physical NIC.
std::vector<std::string> UplinksOfSwitch(const HostCtl::Backend& backend,
                                         const HN::ConnectionPoint& point) {
    const std::string name = point.GetSwitchName();
    if (point.GetType() != HN::ConnectionType::QdsPort)
        return backend.GetPortset(name)->GetUplinks();
    std::vector<std::string> uplinks;
    for (const auto& [pnic, port] : backend.GetQdsSwitch(name)->GetUplinkMap())
        uplinks.push_back(pnic);
    return uplinks;
}

std::string FreeSwitchName(const HostCtl::Backend& backend) {
    for (int n = 0;; ++n) {
        std::string name = "zSwitch" + std::to_string(n);
        if (!backend.GetPortset(name)->IsValidVirtualSwitch()) return name;
    }
}

std::string FreePortGroupName(const HostCtl::Backend& backend) {
    for (int n = 1;; ++n) {
        std::string name = "Management Network" + std::to_string(n);
        if (!backend.GetPortGroup(name)->IsValidPortGroup()) return name;
    }
}

}  // namespace

SafeModeNetworkDialog::SafeModeNetworkDialog(Window* opener, const HostContext& host)
    : ConfirmDialog(opener, {60, 12, 7}, Str(StrId::RestoreStandardSwitchTitle),
                    Str(StrId::RestoreStandardSwitchText), Footer::kF11OkCancel,
                    ConfirmDialog::F11()),
      host_(host) {
    setQuestion(Str(StrId::MoveOntoStandardSwitch));
}

int SafeModeNetworkDialog::run() {
    if (ConfirmDialog::run() != 1) return 0;
    EnableSafeModeNetworking(host_);
    Platform::Log(LOG_INFO,
                  "Enabling safe mode networking by moving all uplinks to a new management "
                  "zSwitch");
    return 1;
}

void EnableSafeModeNetworking(const HostContext& host) {
    try {
        const HostCtl::Backend& backend = host.backend;
        auto info = backend.GetNetworkInfo();
        info->UpdateManagementInterface();
        auto management = info->GetManagementInterface();
        if (!management) {
            Platform::Log(LOG_ERR, "Could not find the management network");
            return;
        }
        const std::vector<std::string> uplinks =
            UplinksOfSwitch(backend, management->GetPortConnection());
        // Everything from the new switch to the management interface enabled
        // again is one change: a failure or a kill on the way puts the old
        // switches back.
        RecordedChange change(backend, HostCtl::Changes::ChangeKind::StandardSwitchRestore);

        const std::string switchName = FreeSwitchName(backend);
        auto vswitch = backend.GetVirtualSwitchInfo()->AddVirtualSwitch(switchName,
                                                                        HN::Portset::DEF_NUM_PORTS);
        const std::string group = FreePortGroupName(backend);
        vswitch->AddPortGroup(group);

        for (const auto& nic : backend.GetZerkelNicInfo()->GetZerkelNics(HN::PortsetKind::All))
            nic->Disable();
        management->ConnectToPortGroup(group);
        for (const auto& uplink : uplinks) MoveUplinkToSwitch(host, *vswitch, uplink);
        management->Enable();
        change.Finish();
        Platform::Log(LOG_INFO, "Management interface %s moved to port group %s on %s",
                      management->GetName().c_str(), group.c_str(), switchName.c_str());
    } catch (const HostCtlException& e) {
        Platform::Log(LOG_ERR, "Changing to legacy virtual switch failed: %s", e.what());
    }
}

void MoveUplinkToSwitch(const HostContext& host, const HN::Portset& vswitch,
                        const std::string& uplink) {
    try {
        auto info = host.backend.GetVirtualSwitchInfo();
        for (const auto& other : info->GetVirtualSwitches(HN::PortsetKind::All))
            other->RemoveUplink(uplink);
        for (const auto& qds : info->GetQdsSwitches()) qds->RemoveUplink(uplink);
        vswitch.AddUplink(uplink);
        try {
            HN::NicTeamingPolicy policy = vswitch.GetTeamingPolicy();
            policy.AddActiveUplink(uplink);
            vswitch.SetTeamingPolicy(policy);
        } catch (const HostCtlException& e) {
            Platform::Log(LOG_ERR, "VS: add uplink to teaming policy failed: %s", e.what());
        }
    } catch (const HostCtlException& e) {
        Platform::Log(LOG_ERR, "Moving uplink %s failed: %s", uplink.c_str(), e.what());
    }
}

}  // namespace Tesk
