#include "host/management_network.h"

#include <syslog.h>

#include "host/runner.h"
#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "hostctl/try_call.h"
#include "platform/syslog.h"

namespace Tesk {

namespace HN = HostCtl::Network;

bool IsOnDistributedSwitch(HN::ZrkNic& nic) {
    return TryHost("Could not determine if a qDS was in use: %s",
                   [&] { return nic.GetPortConnection().GetType() == HN::ConnectionType::QdsPort; })
        .value_or(false);
}

std::optional<ManagementPortGroupSettings> ReadManagementPortGroup(HN::ZrkNic& nic) {
    ManagementPortGroupSettings s;
    auto uplinks = TryHost("Getting uplinks failed: %s", [&] {
        return nic.GetPortConnection().GetPortGroup().GetTeamingPolicy().GetActiveUplinks();
    });
    if (!uplinks) return std::nullopt;
    s.activeUplinks = std::move(*uplinks);
    auto count = TryHost("Getting max number of active uplinks failed: %s", [&] {
        return nic.GetPortConnection().GetPortGroup().GetTeamingPolicy().GetMaxActiveUplinks();
    });
    if (!count) return std::nullopt;
    s.maxActiveUplinks = *count;
    auto vlan = TryHost("Getting VlanID failed: %s",
                        [&] { return nic.GetPortConnection().GetPortGroup().GetVlanId(); });
    if (!vlan) return std::nullopt;
    s.vlanId = *vlan;
    return s;
}

std::optional<std::string> GetConnectionSwitchName(HN::ZrkNic& nic) {
    return TryHost("Getting switch name failed: %s", [&] {
        if (nic.IsStale()) nic.Refresh();
        return nic.GetPortConnection().GetSwitchName();
    });
}

bool GetAdapters(const HostCtl::Backend& host, std::vector<PnicSummary>& adapters,
                 UplinkOwnerMap& owners) {
    std::vector<std::string> names;
    if (!GetPnicNames(host, names) || !BuildUplinkOwnerMap(host, names, owners)) return false;
    for (const auto& name : names) {
        auto summary = GetPnicSummary(host, name, owners);
        if (!summary) return false;
        adapters.push_back(std::move(*summary));
    }
    return true;
}

std::string GetAdapterDescription(const HostCtl::Backend& host, const std::string& pnic) {
    return TryHost("Getting physical nic failed: %s",
                   [&] {
                       auto nic = host.GetPnic(pnic);
                       if (nic->IsStale()) nic->Refresh();
                       auto pci = nic->GetPciDevice();
                       std::string name = pci ? CollapseWhitespace(pci->GetDescription()) : "";
                       return name.empty() ? nic->GetMacAddress().GetStringAddress() : name;
                   })
        .value_or("");
}

}  // namespace Tesk
