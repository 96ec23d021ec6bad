// The network value types' rules: address and netmask texts, IPv6 networks,
// MAC addresses, and the IP configuration's mode switches.
#include <gtest/gtest.h>

#include "hostctl/exception.h"
#include "hostctl/network.h"
#include "hostctl/network_types.h"

namespace {

using namespace HostCtl::Network;
using HostCtl::Lib::HostCtlException;

TEST(Ipv4AddressTest, AcceptsOnlyDottedQuads) {
    for (const char* good : {"192.168.1.1", "0.0.0.0", "255.255.255.255"})
        EXPECT_TRUE(Ipv4Address::IsValidAddress(good)) << good;
    for (const char* bad : {"", "256.1.1.1", "1.2.3", "1.2.3.4.5", "01.2.3.4", " 1.2.3.4", "1..3.4",
                            "1.2.3.-4", "::1"})
        EXPECT_FALSE(Ipv4Address::IsValidAddress(bad)) << bad;
    EXPECT_THROW(Ipv4Address("192.168.1"), HostCtlException);
}

TEST(Ipv4AddressTest, NetmaskMustBeContiguousOnes) {
    for (const char* good : {"255.255.255.0", "255.255.255.255", "0.0.0.0", "255.255.240.0"})
        EXPECT_TRUE(Ipv4Address(good).IsValidNetmask()) << good;
    for (const char* bad : {"255.0.255.0", "0.255.255.255", "255.255.255.253", "1.0.0.0"})
        EXPECT_FALSE(Ipv4Address(bad).IsValidNetmask()) << bad;
    EXPECT_EQ(Ipv4Address("255.255.240.0").GetPrefixLength(), 20);
}

TEST(Ipv6AddressTest, ZonesCanonicalTextAndLinkLocalScope) {
    for (const char* good : {"2001:db8::1", "::", "fe80::1%zrk0", "::ffff:192.168.1.1"})
        EXPECT_TRUE(Ipv6Address::IsValidAddress(good)) << good;
    for (const char* bad : {"", "1.2.3.4", "2001:db8:::1", "fe80::1%", "%zrk0", "fe80::1%zrk 0",
                            "2001:db8::1/64", "1:2:3:4:5:6:7:8:9"})
        EXPECT_FALSE(Ipv6Address::IsValidAddress(bad)) << bad;
    EXPECT_EQ(Ipv6Address("2001:0DB8:0:0::0001").GetStringAddress(), "2001:db8::1");
    EXPECT_EQ(Ipv6Address("fe80::1%zrk0").GetScopedStringAddress(), "fe80::1%zrk0");
    for (const char* yes : {"fe80::1", "febf:ffff::1"}) EXPECT_TRUE(Ipv6Address(yes).IsLinkLocal());
    for (const char* no : {"fec0::1", "fe00::1", "ff02::1"})
        EXPECT_FALSE(Ipv6Address(no).IsLinkLocal());
}

TEST(Ipv6NetworkTest, NeedsAddressSlashPrefixUpTo128) {
    for (const char* good : {"2001:db8::1/64", "::/0", "2001:db8::1/128"})
        EXPECT_TRUE(Ipv6Network::IsValidAddressAndNetmask(good)) << good;
    for (const char* bad :
         {"2001:db8::1", "/64", "2001:db8::1/", "2001:db8::1/129", "2001:db8::1/-1",
          "2001:db8::1/6a", "fe80::1%zrk0/64", "192.168.1.1/24", "2001:db8::1/0064"})
        EXPECT_FALSE(Ipv6Network::IsValidAddressAndNetmask(bad)) << bad;
    EXPECT_EQ(Ipv6Network("fe80::1/64").GetScope(), Ipv6Scope::LinkLocal);
}

TEST(MacAddressTest, ParsesEitherSeparatorAndPrintsLowerCaseColons) {
    EXPECT_EQ(MacAddress("02-5A-4B-AB-CD-EF").GetStringAddress(), "02:5a:4b:ab:cd:ef");
    for (const char* bad :
         {"", "02:5a:4b:ab:cd", "02:5a:4b:ab:cd:eg", "025a.4bab.cdef", "02:5a:4b:ab:cd:ef:01"})
        EXPECT_FALSE(MacAddress::IsValidAddress(bad)) << bad;
}

TEST(IpConfigTest, ModeSwitchesAndIpv6NetworksKeptOnce) {
    IpConfig c;
    c.SetIpv4Address(Ipv4Address("10.0.0.5"));
    c.SetUseDhcp(false, true);
    EXPECT_TRUE(c.GetIpv4UseNone());
    EXPECT_TRUE(c.GetIpv4Address().IsAnyAddress()) << "IPv4 off keeps no address";
    c.SetUseDhcp(true);
    EXPECT_FALSE(c.GetIpv4UseNone());
    EXPECT_TRUE(c.IsUsingDhcp());
    c.SetUseDhcp(false);
    c.SetUseIpv6Dhcp(true);
    EXPECT_FALSE(c.IsUsingDhcp()) << "DHCPv6 counts only with IPv6 on";
    c.EnableIpv6();
    EXPECT_TRUE(c.IsUsingDhcp());

    // The same address with a new prefix replaces the old one, of any type.
    Ipv6Network learnt("2001:db8::1/64");
    learnt.SetIpv6AddressType(Ipv6AddressType::Dhcp);
    c.AddIpv6Network(Ipv6Network("2001:db8::1/64"));
    c.AddIpv6Network(learnt);
    c.AddIpv6Network(Ipv6Network("2001:db8::1/48"));
    ASSERT_EQ(c.GetIpv6Networks().size(), 2u);
    EXPECT_TRUE(c.RemoveIpv6Network(learnt));
    EXPECT_FALSE(c.RemoveIpv6Network(learnt));
    EXPECT_EQ(c.GetIpv6Networks().front().GetStringAddress(), "2001:db8::1/48");
}

}  // namespace
