// The contract of the standard switches and their port groups:
// VirtualSwitchInfo, Portset, NamedPortGroup and PortGroup.
#include <algorithm>

#include "tests/contract/contract.h"

namespace {

using namespace HostCtl::Network;
using namespace TeskContract;
using HostCtl::Backend;

class SwitchContract : public OnManagedHost {
protected:
    // A physical NIC that no switch uses.
    std::string UnusedPnic() {
        auto unused = host().GetNetworkInfo()->GetPnics(PnicKind::Unused);
        if (unused.empty()) ADD_FAILURE() << "every physical NIC is used";
        return unused.empty() ? "" : unused[0]->GetName();
    }
    // A new switch "zSwitch9" with the NIC as its uplink and two port groups.
    std::unique_ptr<Portset> SwitchWithGroups(const std::string& uplink) {
        auto s = host().GetVirtualSwitchInfo()->AddVirtualSwitch("zSwitch9");
        s->AddUplink(uplink);
        s->AddPortGroup("Group A");
        s->AddPortGroup("Group B", 7);
        return s;
    }
};

bool Has(const std::vector<std::string>& list, const std::string& item) {
    return std::find(list.begin(), list.end(), item) != list.end();
}

PortGroup Group(const Backend& host, const std::string& name) {
    for (const auto& group : host.GetNetworkInfo()->GetAllPortGroups())
        if (group.GetName() == name) return group;
    ADD_FAILURE() << "no port group " << name;
    return PortGroup(name, "", nullptr);
}

// The management interface's switch and port group.
PortGroup ManagementGroup(const Backend& host) {
    return Management(host)->GetPortConnection().GetPortGroup();
}

TEST_F(SwitchContract, NewSwitchIsEmptyAndNewPortGroupsFollowIt) {
    Need(Capability::SecondStandardSwitch);
    if (IsSkipped()) return;
    auto added = host().GetVirtualSwitchInfo()->AddVirtualSwitch("zSwitch9");
    EXPECT_TRUE(host().GetPortset("zSwitch9")->IsValidVirtualSwitch());
    EXPECT_EQ(added->GetNumPorts(), Portset::DEF_NUM_PORTS);
    EXPECT_TRUE(added->GetUplinks().empty() && added->GetPortGroups().empty());

    const std::string pnic = UnusedPnic();
    added->AddUplink(pnic);
    EXPECT_EQ(added->GetUplinks(), std::vector<std::string>{pnic});
    NicTeamingPolicy policy;
    policy.AddActiveUplink(pnic);
    added->SetTeamingPolicy(policy);
    const PortGroup group = added->AddPortGroup("Group A");
    EXPECT_TRUE(host().GetPortGroup("Group A")->IsValidPortGroup());
    EXPECT_EQ(group.GetVlanId(), 0);
    EXPECT_EQ(Describe(group.GetTeamingPolicy()), Describe(policy));

    added->RemoveUplink(pnic);
    EXPECT_FALSE(group.GetTeamingPolicy().HasUplink(pnic));
    added->RemoveUplink(pnic);  // not an uplink: nothing to do
}

TEST_F(SwitchContract, PortGroupUplinksMoveNicsBetweenSwitches) {
    Need(Capability::SecondStandardSwitch);
    if (IsSkipped()) return;
    const std::string pnic = UnusedPnic();
    auto s = SwitchWithGroups(pnic);
    PortGroup a = Group(host(), "Group A");
    PortGroup b = Group(host(), "Group B");
    // Both follow the switch's policy: an uplink added to one shows in both.
    a.AddUplink(pnic);
    EXPECT_TRUE(b.GetTeamingPolicy().HasUplink(pnic));

    // Taken from another switch, it leaves that switch's uplinks and policy.
    auto other = host().GetPortset(ManagementGroup(host()).GetVirtualSwitchName());
    const std::string taken = other->GetUplinks().at(0);
    a.SetTeamingPolicy(a.GetTeamingPolicy());  // a policy of its own from now on
    a.AddUplink(taken);
    EXPECT_EQ(a.GetTeamingPolicy().GetActiveUplinks(), (std::vector<std::string>{pnic, taken}));
    EXPECT_FALSE(b.GetTeamingPolicy().HasUplink(taken));
    EXPECT_TRUE(Has(s->GetUplinks(), taken));
    EXPECT_FALSE(Has(other->GetUplinks(), taken) || other->GetTeamingPolicy().HasUplink(taken));

    // An uplink stays on the switch while another group still uses it.
    a.RemoveUplink(pnic);
    EXPECT_TRUE(Has(s->GetUplinks(), pnic)) << "group B still uses it";
    a.RemoveUplink(taken);
    EXPECT_FALSE(Has(s->GetUplinks(), taken)) << "no group uses it";
    a.SetVlanId(4095);
    EXPECT_EQ(a.GetVlanId(), 4095);
    EXPECT_EQ(b.GetVlanId(), 7);
}

TEST_F(SwitchContract, UsedPortsAreUplinksAndActiveClients) {
    for (const auto& s : host().GetVirtualSwitchInfo()->GetVirtualSwitches()) {
        std::int64_t used = static_cast<std::int64_t>(s->GetUplinks().size());
        for (const auto& group : host().GetNetworkInfo()->GetAllPortGroups())
            if (group.GetVirtualSwitchName() == s->GetName()) used += group.GetActiveClients();
        EXPECT_EQ(s->GetUsedPorts(), used) << s->GetName();
    }
    // A Zerkel NIC connected to a group is one more client of it.
    Need(Capability::SecondStandardSwitch);
    if (IsSkipped()) return;
    auto s = SwitchWithGroups(UnusedPnic());
    Management(host())->ConnectToPortGroup("Group A");
    EXPECT_EQ(Group(host(), "Group A").GetActiveClients(), 1);
    EXPECT_EQ(s->GetUsedPorts(), 2) << "the uplink and the NIC";
}

TEST_F(SwitchContract, HandlesOfAGoneSwitchFail) {
    const PortGroup group = ManagementGroup(host());
    auto vswitch = host().GetPortset(group.GetVirtualSwitchName());
    host().GetNetworkInfo()->ClearNetworkConfig();
    EXPECT_FALSE(vswitch->IsValidVirtualSwitch());
    ExpectRefused({
        {"a port group's VLAN", [&](const Backend&) { group.GetVlanId(); }},
        {"a switch's uplinks", [&](const Backend&) { vswitch->GetUplinks(); }},
        {"a port group on it", [&](const Backend&) { vswitch->AddPortGroup("Group C"); }},
    });
}

TEST_F(SwitchContract, RefusedSwitchChangesLeaveTheHostAlone) {
    Need(Capability::SecondStandardSwitch);
    if (IsSkipped()) return;
    const std::string unused = UnusedPnic();
    auto s = SwitchWithGroups(unused);
    const PortGroup management = ManagementGroup(host());
    const std::string existing = management.GetVirtualSwitchName();
    const std::string used = host().GetPortset(existing)->GetUplinks().at(0);
    auto add = [](std::string name, std::int64_t ports) {
        return [=](const Backend& b) { b.GetVirtualSwitchInfo()->AddVirtualSwitch(name, ports); };
    };
    auto zSwitch9 = [](const Backend& b) { return b.GetPortset("zSwitch9"); };
    NicTeamingPolicy foreign;
    foreign.AddActiveUplink(used);
    ExpectRefused({
        {"an empty switch name", add("", 128)},
        {"a switch name of 32 characters", add(std::string(32, 'x'), 128)},
        {"a switch name that is taken", add(existing, 128)},
        {"no ports", add("zS", 0)},
        {"4097 ports", add("zS", 4097)},
        {"an uplink the host lacks",
         [&](const Backend& b) { zSwitch9(b)->AddUplink("no-such-nic"); }},
        {"an uplink of another switch", [&](const Backend& b) { zSwitch9(b)->AddUplink(used); }},
        {"an uplink twice", [&](const Backend& b) { zSwitch9(b)->AddUplink(unused); }},
        {"a policy with another switch's uplink",
         [&](const Backend& b) { zSwitch9(b)->SetTeamingPolicy(foreign); }},
        {"a port group name taken on another switch",
         [&](const Backend& b) { zSwitch9(b)->AddPortGroup(management.GetName()); }},
        {"an empty port group name", [&](const Backend& b) { zSwitch9(b)->AddPortGroup(""); }},
        {"a port group VLAN of 4096",
         [&](const Backend& b) { zSwitch9(b)->AddPortGroup("Group C", 4096); }},
        {"a VLAN of 4096", [](const Backend& b) { Group(b, "Group A").SetVlanId(4096); }},
        {"removing an uplink the group does not use",
         [&](const Backend& b) { Group(b, "Group A").RemoveUplink(used); }},
    });
}

// The operations that change the host, made to fail.
TEST_F(SwitchContract, FailuresLeaveTheHostAlone) {
    const std::string unused = UnusedPnic();
    const PortGroup management = ManagementGroup(host());
    const std::string name = management.GetVirtualSwitchName();
    ExpectFailures({
        {"VirtualSwitchInfo.AddVirtualSwitch",
         [](const Backend& b) { b.GetVirtualSwitchInfo()->AddVirtualSwitch("zSwitch9"); }},
        {"Portset.AddUplink", [&](const Backend& b) { b.GetPortset(name)->AddUplink(unused); }},
        {"Portset.AddPortGroup",
         [&](const Backend& b) { b.GetPortset(name)->AddPortGroup("Group C"); }},
        {"PortGroup.SetVlanId", [&](const Backend&) { management.SetVlanId(5); }},
        {"PortGroup.AddUplink", [&](const Backend&) { management.AddUplink(unused); }},
    });
}

}  // namespace
