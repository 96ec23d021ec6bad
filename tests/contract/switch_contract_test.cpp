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
    // A new switch with the NIC as its uplink and two port groups.
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
    for (const auto& group : host.GetNetworkInfo()->GetAllPortGroups(PortsetKind::All))
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
    auto switches = host().GetVirtualSwitchInfo();
    EXPECT_FALSE(host().GetPortset("zSwitch9")->IsValidVirtualSwitch());
    auto added = switches->AddVirtualSwitch("zSwitch9");
    EXPECT_EQ(added->GetName(), "zSwitch9");
    EXPECT_TRUE(host().GetPortset("zSwitch9")->IsValidVirtualSwitch());
    EXPECT_EQ(switches->GetVirtualSwitches(PortsetKind::All).back()->GetName(), "zSwitch9");
    EXPECT_EQ(added->GetNumPorts(), Portset::DEF_NUM_PORTS);
    EXPECT_TRUE(added->GetUplinks().empty());
    EXPECT_TRUE(added->GetPortGroups().empty());
    EXPECT_EQ(added->GetUsedPorts(), 0);
    EXPECT_EQ(switches->AddVirtualSwitch("zSwitch8", 64)->GetNumPorts(), 64);

    const std::string pnic = UnusedPnic();
    added->AddUplink(pnic);
    EXPECT_EQ(added->GetUplinks(), std::vector<std::string>{pnic});
    for (const auto& unused : host().GetNetworkInfo()->GetPnics(PnicKind::Unused))
        EXPECT_NE(unused->GetName(), pnic) << "an uplink is used";
    NicTeamingPolicy policy;
    policy.AddActiveUplink(pnic);
    added->SetTeamingPolicy(policy);
    EXPECT_EQ(added->GetTeamingPolicy().GetActiveUplinks(), std::vector<std::string>{pnic});

    EXPECT_FALSE(host().GetPortGroup("Group A")->IsValidPortGroup());
    const PortGroup group = added->AddPortGroup("Group A");
    EXPECT_TRUE(host().GetPortGroup("Group A")->IsValidPortGroup());
    EXPECT_EQ(group.GetVirtualSwitchName(), "zSwitch9");
    EXPECT_EQ(added->GetPortGroups(), std::vector<std::string>{"Group A"});
    EXPECT_EQ(group.GetVlanId(), 0);
    EXPECT_EQ(Describe(group.GetTeamingPolicy()), Describe(policy));
    EXPECT_EQ(added->AddPortGroup("Group B", 4095).GetVlanId(), 4095);

    added->RemoveUplink(pnic);
    EXPECT_TRUE(added->GetUplinks().empty());
    EXPECT_FALSE(added->GetTeamingPolicy().HasUplink(pnic));
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
    EXPECT_EQ(a.GetTeamingPolicy().GetActiveUplinks(), std::vector<std::string>{pnic});
    EXPECT_TRUE(b.GetTeamingPolicy().HasUplink(pnic));

    // Taken from another switch, it leaves that switch's uplinks and policy.
    const PortGroup management = ManagementGroup(host());
    auto other = host().GetPortset(management.GetVirtualSwitchName());
    const std::string taken = other->GetUplinks().at(0);
    a.SetTeamingPolicy(a.GetTeamingPolicy());  // a policy of its own from now on
    a.AddUplink(taken);
    EXPECT_EQ(a.GetTeamingPolicy().GetActiveUplinks(), (std::vector<std::string>{pnic, taken}));
    EXPECT_FALSE(b.GetTeamingPolicy().HasUplink(taken));
    EXPECT_TRUE(Has(s->GetUplinks(), taken));
    EXPECT_FALSE(Has(other->GetUplinks(), taken));
    EXPECT_FALSE(other->GetTeamingPolicy().HasUplink(taken));

    // An uplink stays on the switch while another group still uses it.
    a.RemoveUplink(pnic);
    EXPECT_FALSE(a.GetTeamingPolicy().HasUplink(pnic));
    EXPECT_TRUE(Has(s->GetUplinks(), pnic)) << "group B still uses it";
    a.RemoveUplink(taken);
    EXPECT_FALSE(Has(s->GetUplinks(), taken)) << "no group uses it";

    a.SetVlanId(4095);
    EXPECT_EQ(a.GetVlanId(), 4095);
    EXPECT_EQ(b.GetVlanId(), 7);
}

TEST_F(SwitchContract, UsedPortsAreUplinksAndActiveClients) {
    auto nics = host().GetZerkelNicInfo()->GetZerkelNics(PortsetKind::All);
    for (const auto& s : host().GetVirtualSwitchInfo()->GetVirtualSwitches(PortsetKind::All)) {
        std::int64_t used = static_cast<std::int64_t>(s->GetUplinks().size());
        for (const auto& group : host().GetNetworkInfo()->GetAllPortGroups(PortsetKind::All)) {
            if (group.GetVirtualSwitchName() != s->GetName()) continue;
            std::int64_t connected = 0;
            for (const auto& nic : nics) {
                const ConnectionPoint point = nic->GetPortConnection();
                connected += point.GetType() == ConnectionType::PortGroup &&
                             point.GetPortGroup().GetName() == group.GetName();
            }
            EXPECT_GE(group.GetActiveClients(), connected) << group.GetName();
            used += group.GetActiveClients();
        }
        EXPECT_EQ(s->GetUsedPorts(), used) << s->GetName();
    }

    // A Zerkel NIC connected to a group is one more client of it.
    Need(Capability::SecondStandardSwitch);
    if (IsSkipped()) return;
    auto s = SwitchWithGroups(UnusedPnic());
    auto nic = Management(host());
    nic->ConnectToPortGroup("Group A");
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
        {"a port group's policy", [&](const Backend&) { group.GetTeamingPolicy(); }},
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
    auto zSwitch9 = [](const Backend& b) { return b.GetPortset("zSwitch9"); };
    NicTeamingPolicy foreign;
    foreign.AddActiveUplink(used);
    ExpectRefused({
        {"an empty switch name",
         [](const Backend& b) { b.GetVirtualSwitchInfo()->AddVirtualSwitch(""); }},
        {"a switch name of 32 characters",
         [](const Backend& b) {
             b.GetVirtualSwitchInfo()->AddVirtualSwitch(std::string(32, 'x'));
         }},
        {"a switch name that is taken",
         [&](const Backend& b) { b.GetVirtualSwitchInfo()->AddVirtualSwitch(existing); }},
        {"no ports", [](const Backend& b) { b.GetVirtualSwitchInfo()->AddVirtualSwitch("zS", 0); }},
        {"4097 ports",
         [](const Backend& b) { b.GetVirtualSwitchInfo()->AddVirtualSwitch("zS", 4097); }},
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
        {"a group uplink the host lacks",
         [](const Backend& b) { Group(b, "Group A").AddUplink("no-such-nic"); }},
        {"removing an uplink the group does not use",
         [&](const Backend& b) { Group(b, "Group A").RemoveUplink(used); }},
    });
}

TEST_F(SwitchContract, FailuresLeaveTheHostAlone) {
    const std::string unused = UnusedPnic();
    const PortGroup management = ManagementGroup(host());
    const std::string name = management.GetVirtualSwitchName();
    auto vswitch = [name](void (*call)(const Portset&)) {
        return [name, call](const Backend& b) { call(*b.GetPortset(name)); };
    };
    auto group = [management](void (*call)(const PortGroup&)) {
        return [management, call](const Backend&) { call(management); };
    };
    ExpectFailures({
        {"VirtualSwitchInfo.GetVirtualSwitches",
         [](const Backend& b) { b.GetVirtualSwitchInfo()->GetVirtualSwitches(PortsetKind::All); }},
        {"VirtualSwitchInfo.GetQdsSwitches",
         [](const Backend& b) { b.GetVirtualSwitchInfo()->GetQdsSwitches(); }},
        {"VirtualSwitchInfo.AddVirtualSwitch",
         [](const Backend& b) { b.GetVirtualSwitchInfo()->AddVirtualSwitch("zSwitch9"); }},
        {"Portset.IsValidVirtualSwitch",
         vswitch([](const Portset& s) { s.IsValidVirtualSwitch(); })},
        {"Portset.GetUplinks", vswitch([](const Portset& s) { s.GetUplinks(); })},
        {"Portset.GetPortGroups", vswitch([](const Portset& s) { s.GetPortGroups(); })},
        {"Portset.GetNumPorts", vswitch([](const Portset& s) { s.GetNumPorts(); })},
        {"Portset.GetUsedPorts", vswitch([](const Portset& s) { s.GetUsedPorts(); })},
        {"Portset.GetConfiguredPorts", vswitch([](const Portset& s) { s.GetConfiguredPorts(); })},
        {"Portset.GetTeamingPolicy", vswitch([](const Portset& s) { s.GetTeamingPolicy(); })},
        {"Portset.SetTeamingPolicy",
         vswitch([](const Portset& s) { s.SetTeamingPolicy(NicTeamingPolicy()); })},
        {"Portset.AddUplink", [&](const Backend& b) { b.GetPortset(name)->AddUplink(unused); }},
        {"Portset.RemoveUplink",
         vswitch([](const Portset& s) { s.RemoveUplink(s.GetUplinks().at(0)); })},
        {"Portset.AddPortGroup", vswitch([](const Portset& s) { s.AddPortGroup("Group C"); })},
        {"NamedPortGroup.IsValidPortGroup",
         [&](const Backend& b) { b.GetPortGroup(management.GetName())->IsValidPortGroup(); }},
        {"PortGroup.GetVlanId", group([](const PortGroup& g) { g.GetVlanId(); })},
        {"PortGroup.SetVlanId", group([](const PortGroup& g) { g.SetVlanId(5); })},
        {"PortGroup.GetActiveClients", group([](const PortGroup& g) { g.GetActiveClients(); })},
        {"PortGroup.GetTeamingPolicy", group([](const PortGroup& g) { g.GetTeamingPolicy(); })},
        {"PortGroup.SetTeamingPolicy",
         group([](const PortGroup& g) { g.SetTeamingPolicy(NicTeamingPolicy()); })},
        {"PortGroup.AddUplink", [&](const Backend&) { management.AddUplink(unused); }},
        {"PortGroup.RemoveUplink", group([](const PortGroup& g) {
             g.RemoveUplink(g.GetTeamingPolicy().GetActiveUplinks().at(0));
         })},
    });
}

}  // namespace
