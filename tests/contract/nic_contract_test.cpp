// The contract of the host's NICs and network-wide settings: NetworkInfo,
// ZerkelNicInfo, ZrkNic and Pnic.
#include <algorithm>
#include <set>

#include "hostctl/exception.h"
#include "tests/contract/contract.h"

namespace {

using namespace HostCtl::Network;
using namespace TeskContract;
using HostCtl::Backend;

class NicContract : public OnManagedHost {};
class BareNicContract : public OnBareHost {};

template <typename Object>
std::set<std::string> NamesOf(const std::vector<std::unique_ptr<Object>>& objects) {
    std::set<std::string> names;
    for (const auto& o : objects) names.insert(o->GetName());
    return names;
}

std::vector<std::string> Addresses(const IpConfig& config) {
    std::vector<std::string> out;
    for (const auto& n : config.GetIpv6Networks()) out.push_back(n.GetStringAddress());
    return out;
}

bool Has(const std::vector<std::string>& list, const std::string& item) {
    return std::find(list.begin(), list.end(), item) != list.end();
}

// A Zerkel NIC other than the management interface.
std::unique_ptr<ZrkNic> OtherNic(const Backend& host) {
    const std::string management = Management(host)->GetName();
    for (auto& nic : host.GetZerkelNicInfo()->GetZerkelNics(PortsetKind::All))
        if (nic->GetName() != management) return std::move(nic);
    ADD_FAILURE() << "the host has one Zerkel NIC only";
    return nullptr;
}

TEST_F(NicContract, ManagementInterfaceIsAUsableNicWithTheHostsGateways) {
    auto info = host().GetNetworkInfo();
    info->UpdateManagementInterface();
    auto nic = info->GetManagementInterface();
    ASSERT_TRUE(nic);
    EXPECT_TRUE(
        NamesOf(host().GetZerkelNicInfo()->GetZerkelNics(PortsetKind::All)).count(nic->GetName()));
    nic->Refresh();
    EXPECT_TRUE(nic->IsUsable());

    const IpConfig configured = nic->GetConfiguredIpConfig();
    const IpConfig current = nic->GetIpConfig();
    EXPECT_FALSE(configured.GetUseDhcp() || configured.GetIpv4UseNone());
    EXPECT_EQ(current.GetIpv4Address(), configured.GetIpv4Address());
    EXPECT_EQ(current.GetIpv4Netmask(), configured.GetIpv4Netmask());
    auto routing = host().GetRoutingInfo("defaultNetStack");
    EXPECT_EQ(current.GetIpv4Gateway(), routing->GetZerkelDefaultGateway());
    EXPECT_EQ(current.GetIpv6Gateway(), routing->GetIpv6ZerkelDefaultGateway());
    for (const auto& address : Addresses(configured))
        EXPECT_TRUE(Has(Addresses(current), address)) << address << " is configured";

    const ConnectionPoint point = nic->GetPortConnection();
    ASSERT_EQ(point.GetType(), ConnectionType::PortGroup);
    const PortGroup group = point.GetPortGroup();
    EXPECT_EQ(group.GetVirtualSwitchName(), point.GetSwitchName());
    EXPECT_TRUE(Has(host().GetPortset(point.GetSwitchName())->GetPortGroups(), group.GetName()));
}

// Objects that keep a copy: new ones are stale, Refresh() loads them, and
// any change of the host (through them or elsewhere) makes them stale
// again while they answer from their copy until refreshed.
TEST_F(NicContract, NicObjectsAnswerFromTheirCopyUntilRefreshed) {
    auto info = host().GetNetworkInfo();
    auto reader = info->GetManagementInterface();
    auto writer = info->GetManagementInterface();
    ASSERT_TRUE(reader && writer);
    EXPECT_TRUE(reader->IsStale());
    reader->Refresh();
    writer->Refresh();
    EXPECT_FALSE(reader->IsStale());

    IpConfig config = writer->GetConfiguredIpConfig();
    const Ipv4Address before = config.GetIpv4Address();
    const Ipv4Address moved = Ipv4Address::FromHostOrder(before.GetAddress() ^ 1);
    config.SetIpv4Address(moved);
    writer->SetIpConfig(config);
    EXPECT_TRUE(writer->IsStale()) << "changed through the object";
    EXPECT_TRUE(reader->IsStale()) << "changed elsewhere";
    EXPECT_EQ(reader->GetConfiguredIpConfig().GetIpv4Address(), before);
    reader->Refresh();
    EXPECT_EQ(reader->GetConfiguredIpConfig().GetIpv4Address(), moved);

    for (const auto& pnic : info->GetPnics(PnicKind::All)) {
        EXPECT_TRUE(pnic->IsStale()) << pnic->GetName();
        pnic->Refresh();
        EXPECT_FALSE(pnic->IsStale()) << pnic->GetName();
    }
    EXPECT_THROW(host().GetPnic("no-such-nic")->Refresh(), HostCtl::Lib::HostCtlException);
}

TEST_F(NicContract, StaticNoneAndDhcpConfigurationsTakeEffect) {
    auto nic = Management(host());
    IpConfig config = nic->GetConfiguredIpConfig();
    config.SetUseDhcp(false, false);
    config.SetIpv4Netmask(Ipv4Address("255.255.0.0"));
    // What a screen hands back may hold learnt and link-local addresses too;
    // only the static global ones are configured.
    const Ipv6Network added("2001:db8:ff::40/64");
    Ipv6Network learnt("2001:db8:ff::41/64");
    learnt.SetIpv6AddressType(Ipv6AddressType::Autoconf);
    config.AddIpv6Network(added);
    config.AddIpv6Network(learnt);
    config.AddIpv6Network(Ipv6Network("fe80::40/64"));
    nic->SetIpConfig(config);
    EXPECT_TRUE(nic->IsStale());
    nic->Refresh();
    const auto configured = Addresses(nic->GetConfiguredIpConfig());
    EXPECT_TRUE(Has(configured, "2001:db8:ff::40/64"));
    EXPECT_FALSE(Has(configured, "2001:db8:ff::41/64"));
    EXPECT_FALSE(Has(configured, "fe80::40/64"));
    EXPECT_EQ(nic->GetIpConfig().GetIpv4Netmask().GetStringAddress(), "255.255.0.0");
    EXPECT_TRUE(Has(Addresses(nic->GetIpConfig()), "2001:db8:ff::40/64"));

    config.SetUseDhcp(false, true);
    nic->SetIpConfig(config);
    nic->Refresh();
    EXPECT_TRUE(nic->GetConfiguredIpConfig().GetIpv4UseNone());
    EXPECT_TRUE(nic->GetIpConfig().GetIpv4Address().IsAnyAddress());

    config.SetUseDhcp(true);
    config.SetUseIpv6Dhcp(true);
    nic->SetIpConfig(config);
    nic->RenewDhcp();
    nic->RenewDhcpv6();
    nic->RequestRenewal(false);
    nic->Refresh();
    EXPECT_TRUE(nic->GetConfiguredIpConfig().GetUseDhcp());
    EXPECT_TRUE(nic->GetConfiguredIpConfig().GetUseIpv6Dhcp());
}

TEST_F(NicContract, InterfaceAndNicStatesDecideUsability) {
    auto nic = Management(host());
    const std::pair<const char*, void (ZrkNic::*)()> steps[] = {{"down", &ZrkNic::InterfaceDown},
                                                                {"up", &ZrkNic::InterfaceUp},
                                                                {"disabled", &ZrkNic::Disable},
                                                                {"enabled", &ZrkNic::Enable}};
    for (const auto& [state, step] : steps) {
        ((*nic).*step)();
        EXPECT_TRUE(nic->IsStale()) << state;
        nic->Refresh();
        EXPECT_EQ(nic->IsUsable(), state == std::string("up") || state == std::string("enabled"))
            << state;
    }
}

TEST_F(NicContract, NicTakesAPhysicalNicsMacAndMovesBetweenPortGroups) {
    Need(Capability::SecondStandardSwitch);
    if (IsSkipped()) return;
    auto nic = OtherNic(host());
    ASSERT_TRUE(nic);
    nic->Refresh();
    for (const auto& pnic : host().GetNetworkInfo()->GetPnics(PnicKind::All)) {
        pnic->Refresh();
        nic->SetMacAddressFromPnic(*pnic);
        nic->Refresh();
        EXPECT_EQ(nic->GetMacAddress(), pnic->GetMacAddress()) << pnic->GetName();
    }
    const std::string from = nic->GetPortConnection().GetPortGroup().GetName();
    for (const auto& group : host().GetNetworkInfo()->GetAllPortGroups(PortsetKind::All)) {
        if (group.GetName() == from) continue;
        nic->ConnectToPortGroup(group.GetName());
        nic->Refresh();
        const ConnectionPoint point = nic->GetPortConnection();
        EXPECT_EQ(point.GetPortGroup().GetName(), group.GetName());
        EXPECT_EQ(point.GetSwitchName(), group.GetVirtualSwitchName());
    }
}

TEST_F(NicContract, RefusedNicChangesLeaveTheHostAlone) {
    ExpectRefused({
        {"a static address with a netmask that is none",
         [](const Backend& b) {
             auto nic = Management(b);
             IpConfig config = nic->GetConfiguredIpConfig();
             config.SetIpv4Netmask(Ipv4Address("255.0.255.0"));
             nic->SetIpConfig(config);
         }},
        {"a DHCP renewal without DHCP", [](const Backend& b) { Management(b)->RenewDhcp(); }},
        {"a DHCPv6 renewal without DHCPv6", [](const Backend& b) { Management(b)->RenewDhcpv6(); }},
        {"a port group that does not exist",
         [](const Backend& b) { Management(b)->ConnectToPortGroup("No Such Group"); }},
    });
}

// The kinds of a listing are subsets of the whole, chosen by what the other
// interfaces say about each member.
TEST_F(NicContract, ListingsByKindAgreeWithTheNicsAndSwitches) {
    auto info = host().GetNetworkInfo();
    std::set<std::string> uplinks;
    auto switches = host().GetVirtualSwitchInfo();
    for (const auto& s : switches->GetVirtualSwitches(PortsetKind::All))
        for (const auto& u : s->GetUplinks()) uplinks.insert(u);
    for (const auto& q : switches->GetQdsSwitches())
        for (const auto& [pnic, port] : q->GetUplinkMap()) uplinks.insert(pnic);
    std::set<std::string> linked, unused;
    for (const auto& pnic : info->GetPnics(PnicKind::All)) {
        pnic->Refresh();
        if (pnic->IsLinkUp()) linked.insert(pnic->GetName());
        if (!uplinks.count(pnic->GetName())) unused.insert(pnic->GetName());
    }
    EXPECT_EQ(NamesOf(info->GetPnics(PnicKind::Connected)), linked);
    EXPECT_EQ(NamesOf(info->GetPnics(PnicKind::Unused)), unused);
    EXPECT_FALSE(unused.empty());

    std::set<std::string> groups;
    for (const auto& s : switches->GetVirtualSwitches(PortsetKind::Standard))
        for (const auto& g : s->GetPortGroups()) groups.insert(s->GetName() + "/" + g);
    std::set<std::string> listed;
    for (const auto& g : info->GetAllPortGroups(PortsetKind::All))
        listed.insert(g.GetVirtualSwitchName() + "/" + g.GetName());
    EXPECT_EQ(listed, groups);
    EXPECT_TRUE(info->GetAllPortGroups(PortsetKind::Qds).empty());
    EXPECT_TRUE(switches->GetVirtualSwitches(PortsetKind::Qds).empty());

    auto nics = host().GetZerkelNicInfo();
    std::set<std::string> onGroups;
    for (const auto& nic : nics->GetZerkelNics(PortsetKind::All))
        if (nic->GetPortConnection().GetType() == ConnectionType::PortGroup)
            onGroups.insert(nic->GetName());
    EXPECT_EQ(NamesOf(nics->GetZerkelNics(PortsetKind::Standard)), onGroups);
    EXPECT_TRUE(nics->GetZerkelNics(PortsetKind::Qds).empty());
}

TEST_F(NicContract, Ipv6ChangesAtTheNextBootOnly) {
    auto info = host().GetNetworkInfo();
    const bool now = info->IsZrkIpv6Enabled();
    info->SetZrkIpv6Enabled(!now);
    EXPECT_EQ(info->IsZrkIpv6Enabled(), now);
}

TEST_F(NicContract, FactoryLayoutFollowsAClearedNetwork) {
    Need(Capability::HypervisorFactoryLayout);
    if (IsSkipped()) return;
    auto info = host().GetNetworkInfo();
    const auto pnics = NamesOf(info->GetPnics(PnicKind::All));
    std::string firstLinked;
    for (const auto& pnic : info->GetPnics(PnicKind::All)) {
        pnic->Refresh();
        if (pnic->IsLinkUp() && firstLinked.empty()) firstLinked = pnic->GetName();
    }
    info->DisableNetDumper();
    info->ClearNetworkConfig();
    info->UpdateManagementInterface();
    EXPECT_EQ(info->GetManagementInterface(), nullptr);
    EXPECT_TRUE(host().GetVirtualSwitchInfo()->GetVirtualSwitches(PortsetKind::All).empty());
    EXPECT_TRUE(host().GetVirtualSwitchInfo()->GetQdsSwitches().empty());
    EXPECT_TRUE(host().GetZerkelNicInfo()->GetZerkelNics(PortsetKind::All).empty());
    EXPECT_TRUE(host().GetRoutingInfo("defaultNetStack")->GetZerkelDefaultGateway().IsAnyAddress());
    auto dns = host().GetDnsConfig("defaultNetStack");
    EXPECT_TRUE(dns->GetNameServers().empty());
    EXPECT_TRUE(dns->GetIpv6NameServers(true).empty());
    EXPECT_TRUE(dns->GetSearchDomains().empty());
    EXPECT_EQ(NamesOf(info->GetPnics(PnicKind::All)), pnics) << "the hardware stays";

    info->AutoConfigNetwork();
    auto switches = host().GetVirtualSwitchInfo()->GetVirtualSwitches(PortsetKind::All);
    ASSERT_EQ(switches.size(), 1u);
    EXPECT_EQ(switches[0]->GetName(), "zSwitch0");
    EXPECT_EQ(switches[0]->GetUplinks(), std::vector<std::string>{firstLinked});
    EXPECT_EQ(switches[0]->GetPortGroups(),
              (std::vector<std::string>{"Management Network", "VM Network"}));
    info->UpdateManagementInterface();
    auto nic = info->GetManagementInterface();
    ASSERT_TRUE(nic);
    EXPECT_EQ(nic->GetName(), "zrk0");
    nic->Refresh();
    EXPECT_TRUE(nic->IsUsable());
    EXPECT_EQ(nic->GetPortConnection().GetPortGroup().GetName(), "Management Network");
    const IpConfig config = nic->GetConfiguredIpConfig();
    EXPECT_TRUE(config.GetUseDhcp() && config.GetDhcpDns());
    EXPECT_TRUE(config.IsIpv6Enabled() && config.GetUseIpv6RouterAdvertised());

    ExpectRefused({{"a second automatic configuration",
                    [](const Backend& b) { b.GetNetworkInfo()->AutoConfigNetwork(); }}});
}

TEST_F(BareNicContract, NoNetworkNoManagementInterfaceNoAutomaticConfiguration) {
    auto info = host().GetNetworkInfo();
    EXPECT_TRUE(info->GetPnics(PnicKind::All).empty());
    EXPECT_EQ(info->GetManagementInterface(), nullptr);
    ExpectRefused({{"an automatic configuration without NICs",
                    [](const Backend& b) { b.GetNetworkInfo()->AutoConfigNetwork(); }}});
}

TEST_F(NicContract, FailuresLeaveTheHostAlone) {
    auto pnic = [](const Backend& b) {
        auto all = b.GetNetworkInfo()->GetPnics(PnicKind::All);
        return b.GetPnic(all.at(0)->GetName());
    };
    const auto nic = [](void (*call)(ZrkNic&)) {
        return [call](const Backend& b) { call(*Management(b, false)); };
    };
    const auto useDhcp = nic([](ZrkNic& n) {
        IpConfig config = n.GetConfiguredIpConfig();
        config.SetUseDhcp(true);
        config.SetUseIpv6Dhcp(true);
        n.SetIpConfig(config);
    });
    ExpectFailures({
        {"NetworkInfo.IsZrkIpv6Enabled",
         [](const Backend& b) { b.GetNetworkInfo()->IsZrkIpv6Enabled(); }},
        {"NetworkInfo.SetZrkIpv6Enabled",
         [](const Backend& b) { b.GetNetworkInfo()->SetZrkIpv6Enabled(false); }},
        {"NetworkInfo.GetPnics",
         [](const Backend& b) { b.GetNetworkInfo()->GetPnics(PnicKind::All); }},
        {"NetworkInfo.GetAllPortGroups",
         [](const Backend& b) { b.GetNetworkInfo()->GetAllPortGroups(PortsetKind::All); }},
        {"NetworkInfo.UpdateManagementInterface",
         [](const Backend& b) { b.GetNetworkInfo()->UpdateManagementInterface(); }},
        {"NetworkInfo.GetManagementInterface",
         [](const Backend& b) { b.GetNetworkInfo()->GetManagementInterface(); }},
        {"NetworkInfo.ClearNetworkConfig",
         [](const Backend& b) { b.GetNetworkInfo()->ClearNetworkConfig(); }},
        {"NetworkInfo.DisableNetDumper",
         [](const Backend& b) { b.GetNetworkInfo()->DisableNetDumper(); }},
        {"ZerkelNicInfo.GetZerkelNics",
         [](const Backend& b) { b.GetZerkelNicInfo()->GetZerkelNics(PortsetKind::All); }},
        {"ZrkNic.Refresh", nic([](ZrkNic& n) { n.Refresh(); })},
        {"ZrkNic.GetMacAddress", nic([](ZrkNic& n) { n.GetMacAddress(); })},
        {"ZrkNic.SetMacAddressFromPnic",
         [&](const Backend& b) { Management(b, false)->SetMacAddressFromPnic(*pnic(b)); }},
        {"ZrkNic.GetIpConfig", nic([](ZrkNic& n) { n.GetIpConfig(); })},
        {"ZrkNic.GetConfiguredIpConfig", nic([](ZrkNic& n) { n.GetConfiguredIpConfig(); })},
        {"ZrkNic.SetIpConfig", nic([](ZrkNic& n) { n.SetIpConfig(IpConfig()); })},
        {"ZrkNic.GetPortConnection", nic([](ZrkNic& n) { n.GetPortConnection(); })},
        {"ZrkNic.ConnectToPortGroup", nic([](ZrkNic& n) {
             n.ConnectToPortGroup(n.GetPortConnection().GetPortGroup().GetName());
         })},
        {"ZrkNic.Enable", nic([](ZrkNic& n) { n.Enable(); })},
        {"ZrkNic.Disable", nic([](ZrkNic& n) { n.Disable(); })},
        {"ZrkNic.IsUsable", nic([](ZrkNic& n) { n.IsUsable(); })},
        {"ZrkNic.InterfaceDown", nic([](ZrkNic& n) { n.InterfaceDown(); })},
        {"ZrkNic.InterfaceUp", nic([](ZrkNic& n) { n.InterfaceUp(); })},
        {"ZrkNic.RequestRenewal", nic([](ZrkNic& n) { n.RequestRenewal(true); })},
        {"Pnic.Refresh", [&](const Backend& b) { pnic(b)->Refresh(); }},
        {"Pnic.GetPciDevice", [&](const Backend& b) { pnic(b)->GetPciDevice(); }},
        {"Pnic.GetMacAddress", [&](const Backend& b) { pnic(b)->GetMacAddress(); }},
        {"Pnic.IsLinkUp", [&](const Backend& b) { pnic(b)->IsLinkUp(); }},
        // Last, as they change the host first: DHCP on, the network cleared.
        {"ZrkNic.RenewDhcp", nic([](ZrkNic& n) { n.RenewDhcp(); }), useDhcp},
        {"ZrkNic.RenewDhcpv6", nic([](ZrkNic& n) { n.RenewDhcpv6(); }), useDhcp},
        {"NetworkInfo.AutoConfigNetwork",
         [](const Backend& b) { b.GetNetworkInfo()->AutoConfigNetwork(); },
         [](const Backend& b) { b.GetNetworkInfo()->ClearNetworkConfig(); }},
    });
}

}  // namespace
