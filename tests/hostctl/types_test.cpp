// Address texts, netmasks, IPv6 networks, scoped texts and the IP
// configuration's mode switches.
#include <gtest/gtest.h>

#include <functional>

#include "hostctl/exception.h"
#include "hostctl/network.h"
#include "hostctl/network_types.h"

namespace {

using namespace HostCtl::Network;
using HostCtl::Lib::HostCtlException;

TEST(Ipv4AddressTest, AcceptsOnlyDottedQuads) {
    for (const char* good : {"192.168.1.1", "0.0.0.0", "255.255.255.255", "10.0.20.21"})
        EXPECT_TRUE(Ipv4Address::IsValidAddress(good)) << good;
    for (const char* bad : {"", "256.1.1.1", "1.2.3", "1.2.3.4.5", "01.2.3.4", " 1.2.3.4",
                            "1.2.3.4 ", "1..3.4", "a.b.c.d", "1.2.3.-4", "::1"})
        EXPECT_FALSE(Ipv4Address::IsValidAddress(bad)) << bad;
    EXPECT_THROW(Ipv4Address("192.168.1"), HostCtlException);
}

TEST(Ipv4AddressTest, ValueAndTextRoundTrip) {
    Ipv4Address a("192.168.10.21");
    EXPECT_EQ(a.GetAddress(), 0xC0A80A15u);
    EXPECT_EQ(Ipv4Address::FromHostOrder(0xC0A80A15u).GetStringAddress(), "192.168.10.21");
    EXPECT_TRUE(Ipv4Address().IsAnyAddress());
    EXPECT_EQ(Ipv4Address().GetStringAddress(), "0.0.0.0");
}

TEST(Ipv4AddressTest, NetmaskMustBeContiguousOnes) {
    for (const char* good : {"255.255.255.0", "255.255.255.255", "0.0.0.0", "255.255.255.254",
                             "128.0.0.0", "255.255.240.0"})
        EXPECT_TRUE(Ipv4Address(good).IsValidNetmask()) << good;
    for (const char* bad : {"255.0.255.0", "0.255.255.255", "255.255.255.253", "1.0.0.0"})
        EXPECT_FALSE(Ipv4Address(bad).IsValidNetmask()) << bad;
    EXPECT_EQ(Ipv4Address("255.255.240.0").GetPrefixLength(), 20);
}

TEST(Ipv6AddressTest, AcceptsAddressesWithOptionalZone) {
    for (const char* good : {"2001:db8::1", "::", "::1", "fe80::1%zrk0", "::ffff:192.168.1.1",
                             "2001:0db8:0000:0000:0000:0000:0000:0001"})
        EXPECT_TRUE(Ipv6Address::IsValidAddress(good)) << good;
    for (const char* bad : {"", "1.2.3.4", "2001:db8::g", "2001:db8:::1", "fe80::1%", "%zrk0",
                            "fe80::1%zrk 0", "2001:db8::1/64", "1:2:3:4:5:6:7:8:9"})
        EXPECT_FALSE(Ipv6Address::IsValidAddress(bad)) << bad;
}

TEST(Ipv6AddressTest, TextIsCanonicalAndScopedTextKeepsTheZone) {
    EXPECT_EQ(Ipv6Address("2001:0DB8:0:0::0001").GetStringAddress(), "2001:db8::1");
    Ipv6Address scoped("fe80::1%zrk0");
    EXPECT_EQ(scoped.GetStringAddress(), "fe80::1");
    EXPECT_EQ(scoped.GetScopedStringAddress(), "fe80::1%zrk0");
    EXPECT_EQ(Ipv6Address("2001:db8::1").GetScopedStringAddress(), "2001:db8::1");
    EXPECT_TRUE(Ipv6Address().IsAnyAddress());
    EXPECT_EQ(Ipv6Address().GetScopedStringAddress(), "::");
}

TEST(Ipv6AddressTest, LinkLocalIsFe80Slash10) {
    for (const char* yes : {"fe80::1", "fe80::5a:4bff:fea1:1000", "febf:ffff::1"})
        EXPECT_TRUE(Ipv6Address(yes).IsLinkLocal()) << yes;
    for (const char* no : {"fec0::1", "fe00::1", "2001:db8::1", "::1", "ff02::1"})
        EXPECT_FALSE(Ipv6Address(no).IsLinkLocal()) << no;
}

TEST(Ipv6NetworkTest, NeedsAddressSlashPrefixUpTo128) {
    for (const char* good : {"2001:db8::1/64", "fe80::1/64", "::/0", "2001:db8::1/128"})
        EXPECT_TRUE(Ipv6Network::IsValidAddressAndNetmask(good)) << good;
    for (const char* bad :
         {"2001:db8::1", "/64", "2001:db8::1/", "2001:db8::1/129", "2001:db8::1/-1",
          "2001:db8::1/6a", "fe80::1%zrk0/64", "192.168.1.1/24", "2001:db8::1/0064"})
        EXPECT_FALSE(Ipv6Network::IsValidAddressAndNetmask(bad)) << bad;
}

TEST(Ipv6NetworkTest, ParsedNetworkIsStaticWithScopeFromAddress) {
    Ipv6Network global("2001:db8:10::21/64");
    EXPECT_EQ(global.GetStringAddress(), "2001:db8:10::21/64");
    EXPECT_EQ(global.GetIpv6AddressType(), Ipv6AddressType::Static);
    EXPECT_EQ(global.GetScope(), Ipv6Scope::Global);
    EXPECT_EQ(Ipv6Network("fe80::1/64").GetScope(), Ipv6Scope::LinkLocal);
    EXPECT_THROW(Ipv6Network("2001:db8::1"), HostCtlException);
}

TEST(MacAddressTest, ParsesEitherSeparatorAndPrintsLowerCaseColons) {
    EXPECT_EQ(MacAddress("02-5A-4B-AB-CD-EF").GetStringAddress(), "02:5a:4b:ab:cd:ef");
    for (const char* bad :
         {"", "02:5a:4b:ab:cd", "02:5a:4b:ab:cd:eg", "025a.4bab.cdef", "02:5a:4b:ab:cd:ef:01"})
        EXPECT_FALSE(MacAddress::IsValidAddress(bad)) << bad;
    EXPECT_THROW(MacAddress("nonsense"), HostCtlException);
}

TEST(IpAddressTest, ParseGivesTheRightFamilyAndClonesKeepIt) {
    auto v4 = IpAddress::Parse("192.168.10.2");
    auto v6 = IpAddress::Parse("2001:db8::53");
    EXPECT_TRUE(v4->IsIpv4());
    EXPECT_TRUE(v6->IsIpv6());
    EXPECT_EQ(v6->Clone()->GetStringAddress(), "2001:db8::53");
    EXPECT_THROW(IpAddress::Parse("host.example"), HostCtlException);
}

TEST(IpConfigTest, ModeSwitches) {
    IpConfig c;
    c.SetIpv4Address(Ipv4Address("10.0.0.5"));
    c.SetIpv4Netmask(Ipv4Address("255.0.0.0"));
    c.SetUseDhcp(false, true);
    EXPECT_TRUE(c.GetIpv4UseNone());
    EXPECT_FALSE(c.GetUseDhcp());
    EXPECT_TRUE(c.GetIpv4Address().IsAnyAddress()) << "IPv4 off keeps no address";
    c.SetUseDhcp(true);
    EXPECT_TRUE(c.GetUseDhcp());
    EXPECT_FALSE(c.GetIpv4UseNone());
    EXPECT_TRUE(c.IsUsingDhcp());

    c.SetUseDhcp(false);
    c.SetUseIpv6Dhcp(true);
    EXPECT_FALSE(c.IsUsingDhcp()) << "DHCPv6 counts only with IPv6 on";
    c.EnableIpv6();
    EXPECT_TRUE(c.IsUsingDhcp());
}

TEST(IpConfigTest, Ipv6NetworksAreKeptOnceAndRemovedByAddress) {
    IpConfig c;
    Ipv6Network a("2001:db8::1/64");
    Ipv6Network learnt = a;
    learnt.SetIpv6AddressType(Ipv6AddressType::Dhcp);
    c.AddIpv6Network(a);
    c.AddIpv6Network(learnt);
    c.AddIpv6Network(Ipv6Network("2001:db8::1/48"));
    ASSERT_EQ(c.GetIpv6Networks().size(), 2u);
    EXPECT_TRUE(c.RemoveIpv6Network(learnt));
    EXPECT_FALSE(c.RemoveIpv6Network(learnt));
    EXPECT_EQ(c.GetIpv6Networks().front().GetStringAddress(), "2001:db8::1/48");
}

TEST(NicTeamingPolicyTest, ActiveUplinksStayUniqueAndLeaveStandby) {
    NicTeamingPolicy p;
    p.SetStandbyUplinks({"pnic1"});
    p.AddActiveUplink("pnic0");
    p.AddActiveUplink("pnic1");
    p.AddActiveUplink("pnic0");
    EXPECT_EQ(p.GetActiveUplinks(), (std::vector<std::string>{"pnic0", "pnic1"}));
    EXPECT_TRUE(p.GetStandbyUplinks().empty());
    EXPECT_TRUE(p.RemoveUplink("pnic0"));
    EXPECT_FALSE(p.HasUplink("pnic0"));
    EXPECT_FALSE(p.RemoveUplink("pnic0"));
}

// Each kind answers only its own questions, with the texts the screens log.
TEST(ConnectionPointTest, KindsRefuseTheOthersQuestions) {
    const ConnectionPoint none,
        port = ConnectionPoint::ToQdsPort("qDS-Prod", "10"),
        group = ConnectionPoint::ToPortGroup("VM Network", "zSwitch0", nullptr);
    EXPECT_EQ(none.GetType(), ConnectionType::None);
    EXPECT_EQ(group.GetType(), ConnectionType::PortGroup);
    EXPECT_EQ(port.GetType(), ConnectionType::QdsPort);
    EXPECT_EQ(group.GetPortGroup().GetVirtualSwitchName(), "zSwitch0");
    EXPECT_EQ(port.GetSwitchName(), "qDS-Prod");
    const struct {
        std::function<void()> call;
        const char* text;
    } refusals[] = {
        {[&] { none.GetSwitchName(); }, "Unsupported connectee type"},
        {[&] { none.GetPortGroup(); }, "Unsupported zSwitch type"},
        {[&] { port.GetPortGroup(); }, "Unsupported zSwitch type"},
        {[&] { group.GetPortId(); }, "Unsupported zSwitch type"},
        {[&] { group.GetPortGroup().GetVlanId(); }, "Port group VM Network has no host"},
    };
    for (const auto& r : refusals) {
        try {
            r.call();
            ADD_FAILURE() << "no failure; expected " << r.text;
        } catch (const HostCtlException& e) {
            EXPECT_STREQ(e.what(), r.text);
        }
    }
}

}  // namespace
