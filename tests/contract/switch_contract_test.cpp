// The contract of the standard switches and their port groups:
// VirtualSwitchInfo, Portset, NamedPortGroup and PortGroup. Switches and
// port groups beside the management network's are the recovery screens' to
// make (tests/recovery), against the simulated host.
#include "tests/contract/contract.h"

namespace {

using namespace HostCtl::Network;
using namespace TeskContract;
using HostCtl::Backend;

class SwitchContract : public OnManagedHost {};

TEST_F(SwitchContract, UsedPortsAreUplinksAndActiveClients) {
    for (const auto& s : host().GetVirtualSwitchInfo()->GetVirtualSwitches()) {
        std::int64_t used = static_cast<std::int64_t>(s->GetUplinks().size());
        for (const auto& group : host().GetNetworkInfo()->GetAllPortGroups())
            if (group.GetVirtualSwitchName() == s->GetName()) used += group.GetActiveClients();
        EXPECT_EQ(s->GetUsedPorts(), used) << s->GetName();
    }
}

TEST_F(SwitchContract, HandlesOfAGoneSwitchFail) {
    const PortGroup group = Management(host())->GetPortConnection().GetPortGroup();
    auto vswitch = host().GetPortset(group.GetVirtualSwitchName());
    host().GetNetworkInfo()->ClearNetworkConfig();
    EXPECT_FALSE(vswitch->IsValidVirtualSwitch());
    ExpectRefused({
        {"a port group's VLAN", [&](const Backend&) { group.GetVlanId(); }},
        {"a switch's uplinks", [&](const Backend&) { vswitch->GetUplinks(); }},
        {"a port group on it", [&](const Backend&) { vswitch->AddPortGroup("Group C"); }},
    });
}

}  // namespace
