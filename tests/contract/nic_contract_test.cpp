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

std::set<std::string> Addresses(const IpConfig& config) {
    std::set<std::string> out;
    for (const auto& n : config.GetIpv6Networks()) out.insert(n.GetStringAddress());
    return out;
}

TEST_F(NicContract, ManagementInterfaceIsAUsableNicWithTheHostsGateways) {
    auto nic = Management(host());
    EXPECT_TRUE(NamesOf(host().GetZerkelNicInfo()->GetZerkelNics()).count(nic->GetName()));
    EXPECT_TRUE(nic->IsUsable());
    const IpConfig configured = nic->GetConfiguredIpConfig();
    const IpConfig current = nic->GetIpConfig();
    EXPECT_FALSE(configured.GetUseDhcp() || configured.GetIpv4UseNone());
    EXPECT_EQ(current.GetIpv4Address(), configured.GetIpv4Address());
    auto routing = host().GetRoutingInfo("defaultNetStack");
    EXPECT_EQ(current.GetIpv4Gateway(), routing->GetZerkelDefaultGateway());
    EXPECT_EQ(current.GetIpv6Gateway(), routing->GetIpv6ZerkelDefaultGateway());
    const auto inEffect = Addresses(current);
    for (const auto& address : Addresses(configured))
        EXPECT_TRUE(inEffect.count(address)) << address << " is configured";

    const ConnectionPoint point = nic->GetPortConnection();
    ASSERT_EQ(point.GetType(), ConnectionType::PortGroup);
    const auto groups = host().GetPortset(point.GetSwitchName())->GetPortGroups();
    EXPECT_NE(std::find(groups.begin(), groups.end(), point.GetPortGroup().GetName()),
              groups.end());
}

// Objects that keep a copy: new ones are stale, Refresh() loads them, and
// any change of the host (through them or elsewhere) makes them stale
// again while they answer from their copy until refreshed.
TEST_F(NicContract, NicObjectsAnswerFromTheirCopyUntilRefreshed) {
    auto info = host().GetNetworkInfo();
    auto reader = info->GetManagementInterface();
    auto writer = Management(host());
    ASSERT_TRUE(reader);
    EXPECT_TRUE(reader->IsStale());
    reader->Refresh();
    EXPECT_FALSE(reader->IsStale());

    IpConfig config = writer->GetConfiguredIpConfig();
    const Ipv4Address before = config.GetIpv4Address();
    const Ipv4Address moved = Ipv4Address::FromHostOrder(before.GetAddress() ^ 1);
    config.SetIpv4Address(moved);
    writer->SetIpConfig(config);
    EXPECT_TRUE(writer->IsStale() && reader->IsStale());
    EXPECT_EQ(reader->GetConfiguredIpConfig().GetIpv4Address(), before);
    reader->Refresh();
    EXPECT_EQ(reader->GetConfiguredIpConfig().GetIpv4Address(), moved);
    EXPECT_THROW(host().GetPnic("no-such-nic")->Refresh(), HostCtl::Lib::HostCtlException);
}

TEST_F(NicContract, StaticNoneAndDhcpConfigurationsTakeEffect) {
    auto nic = Management(host());
    IpConfig config = nic->GetConfiguredIpConfig();
    config.SetUseDhcp(false, false);
    config.SetIpv4Netmask(Ipv4Address("255.255.0.0"));
    // What a screen hands back may hold learnt and link-local addresses too;
    // only the static global ones are configured.
    config.AddIpv6Network(Ipv6Network("2001:db8:ff::40/64"));
    Ipv6Network learnt("2001:db8:ff::41/64");
    learnt.SetIpv6AddressType(Ipv6AddressType::Autoconf);
    config.AddIpv6Network(learnt);
    config.AddIpv6Network(Ipv6Network("fe80::40/64"));
    nic->SetIpConfig(config);
    nic->Refresh();
    const auto configured = Addresses(nic->GetConfiguredIpConfig());
    EXPECT_TRUE(configured.count("2001:db8:ff::40/64"));
    EXPECT_FALSE(configured.count("2001:db8:ff::41/64") || configured.count("fe80::40/64"));
    EXPECT_EQ(nic->GetIpConfig().GetIpv4Netmask().GetStringAddress(), "255.255.0.0");
    EXPECT_TRUE(Addresses(nic->GetIpConfig()).count("2001:db8:ff::40/64"));

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
    const std::pair<void (ZrkNic::*)(), bool> steps[] = {{&ZrkNic::InterfaceDown, false},
                                                         {&ZrkNic::InterfaceUp, true},
                                                         {&ZrkNic::Disable, false},
                                                         {&ZrkNic::Enable, true}};
    for (const auto& [step, usable] : steps) {
        ((*nic).*step)();
        EXPECT_TRUE(nic->IsStale());
        nic->Refresh();
        EXPECT_EQ(nic->IsUsable(), usable);
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
// interfaces say about each member; IPv6 changes at the next boot only.
TEST_F(NicContract, ListingsByKindAgreeWithTheNicsAndSwitches) {
    auto info = host().GetNetworkInfo();
    std::set<std::string> uplinks, linked, unused, onGroups;
    for (const auto& s : host().GetVirtualSwitchInfo()->GetVirtualSwitches())
        for (const auto& u : s->GetUplinks()) uplinks.insert(u);
    for (const auto& pnic : info->GetPnics()) {
        pnic->Refresh();
        if (pnic->IsLinkUp()) linked.insert(pnic->GetName());
        if (!uplinks.count(pnic->GetName())) unused.insert(pnic->GetName());
    }
    EXPECT_EQ(NamesOf(info->GetPnics(PnicKind::Connected)), linked);
    EXPECT_EQ(NamesOf(info->GetPnics(PnicKind::Unused)), unused);
    EXPECT_FALSE(unused.empty());

    auto nics = host().GetZerkelNicInfo();
    for (const auto& nic : nics->GetZerkelNics())
        if (nic->GetPortConnection().GetType() == ConnectionType::PortGroup)
            onGroups.insert(nic->GetName());
    EXPECT_EQ(NamesOf(nics->GetZerkelNics(PortsetKind::Standard)), onGroups);
    EXPECT_TRUE(nics->GetZerkelNics(PortsetKind::Qds).empty());

    const bool ipv6 = info->IsZrkIpv6Enabled();
    info->SetZrkIpv6Enabled(!ipv6);
    EXPECT_EQ(info->IsZrkIpv6Enabled(), ipv6);
}

TEST_F(BareNicContract, NoNetworkNoManagementInterfaceNoAutomaticConfiguration) {
    auto info = host().GetNetworkInfo();
    EXPECT_TRUE(info->GetPnics().empty());
    EXPECT_EQ(info->GetManagementInterface(), nullptr);
    ExpectRefused({{"an automatic configuration without NICs",
                    [](const Backend& b) { b.GetNetworkInfo()->AutoConfigNetwork(); }}});
}

// The network's changes that no screen test makes fail, made to fail.
TEST_F(NicContract, FailuresLeaveTheHostAlone) {
    const std::string uplink = host().GetNetworkInfo()->GetPnics(PnicKind::Unused).at(0)->GetName();
    const std::string vswitch = Management(host())->GetPortConnection().GetSwitchName();
    ExpectFailures({
        {"ZrkNic.Disable", [](const Backend& b) { Management(b, false)->Disable(); }},
        {"Portset.AddUplink", [&](const Backend& b) { b.GetPortset(vswitch)->AddUplink(uplink); }},
        {"Portset.AddPortGroup",
         [&](const Backend& b) { b.GetPortset(vswitch)->AddPortGroup("Group C"); }},
        {"DnsConfig.SetFqdn",
         [](const Backend& b) {
             b.GetDnsConfig("defaultNetStack")->SetFqdn("a.b.example", true, "");
         }},
        {"DnsConfig.RemoveNameServers",
         [](const Backend& b) { b.GetDnsConfig("defaultNetStack")->RemoveNameServers(); }},
    });
}

}  // namespace
