// Applying the management port group's adapters and VLAN: the active uplinks
// brought in line with the pending list (an adapter another switch holds is
// taken from it), the interface's MAC address taken from the first adapter,
// and the VLAN ID.
#include <algorithm>

#include "hostctl/try_call.h"
#include "network/apply_steps.h"
#include "platform/syslog.h"

namespace Tesk {
namespace {

namespace HN = HostCtl::Network;

bool Contains(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// The management port group, asked of the interface each time (a connection
// that is no standard-switch port group fails here).
HN::PortGroup ManagementPortGroup(HN::ZrkNic& nic) {
    return nic.GetPortConnection().GetPortGroup();
}

// The standard or distributed switch that has the adapter as an uplink now;
// empty when none has it.
std::string SwitchHolding(const HostCtl::Backend& backend, const std::string& pnic) {
    auto switches = backend.GetVirtualSwitchInfo();
    for (const auto& vswitch : switches->GetVirtualSwitches(HN::PortsetKind::All))
        if (Contains(vswitch->GetUplinks(), pnic)) return vswitch->GetName();
    for (const auto& qds : switches->GetQdsSwitches())
        if (qds->GetUplinkMap().contains(pnic)) return qds->GetName();
    return {};
}

// Makes the adapter an active uplink of the group. The host's add takes it
// away from whichever switch has it; the lookup only says so in the log.
void AddUplink(const HostCtl::Backend& backend, const HN::PortGroup& group,
               const std::string& pnic) {
    const std::string holder = SwitchHolding(backend, pnic);
    if (!holder.empty() && holder != group.GetVirtualSwitchName())
        Platform::Log(LOG_INFO, "Moving adapter %s from %s to %s", pnic.c_str(), holder.c_str(),
                      group.GetVirtualSwitchName().c_str());
    group.AddUplink(pnic);
}

}  // namespace

void ApplyAdaptersAndVlan(ApplyRun& run) {
    PendingNetworkConfig& p = run.pending;
    if (p.onDistributedSwitch) return;
    HN::ZrkNic& nic = *p.nic;

    std::string line = "Setting adapters to";
    for (const auto& adapter : p.adapters) line += " " + adapter;
    Platform::Log(LOG_INFO, "%s", line.c_str());

    const auto current = TryHost("Getting uplinks failed: %s", [&] {
        return ManagementPortGroup(nic).GetTeamingPolicy().GetActiveUplinks();
    });
    if (current) {
        run.Guard("Setting adapters failed: ", [&] {
            const HN::PortGroup group = ManagementPortGroup(nic);
            for (const auto& uplink : *current) {
                if (Contains(p.adapters, uplink)) continue;
                group.RemoveUplink(uplink);
                run.uplinksChanged = true;
            }
            for (const auto& adapter : p.adapters) {
                if (Contains(*current, adapter)) continue;
                AddUplink(run.host.backend, group, adapter);
                run.uplinksChanged = true;
            }
        });
    }

    const bool firstChanged = !p.adapters.empty() && (!current || current->empty() ||
                                                      current->front() != p.adapters.front());
    if (firstChanged) {
        run.Guard("Setting mac address of pnic failed: ", [&] {
            auto pnic = run.host.backend.GetPnic(p.adapters.front());
            if (pnic->IsStale()) pnic->Refresh();
            nic.SetMacAddressFromPnic(*pnic);
        });
    }

    const auto vlanId =
        TryHost("Getting VlanID failed: %s", [&] { return ManagementPortGroup(nic).GetVlanId(); });
    if (vlanId && *vlanId != p.vlanId) {
        run.Guard("Setting VlanID failed: %s", [&] {
            ManagementPortGroup(nic).SetVlanId(p.vlanId);
            run.vlanChanged = true;
        });
    }
}

}  // namespace Tesk
