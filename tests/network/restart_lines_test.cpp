// The management network restart's progress text: which addresses it
// shows after the interface came up again.
#include <gtest/gtest.h>

#include "hostctl/network_types.h"
#include "network/restart_network_dialog.h"
#include "ui/strings.h"

namespace {

namespace HN = HostCtl::Network;

HN::Ipv6Network V6(const std::string& text, HN::Ipv6AddressType type,
                   HN::Ipv6Scope scope = HN::Ipv6Scope::Global) {
    HN::Ipv6Network n(text);
    n.SetIpv6AddressType(type);
    n.SetScope(scope);
    return n;
}

using Type = HN::Ipv6AddressType;

TEST(RestartLines, Ipv4WhenStaticThenTheStaticIpv6AddressesOnly) {
    Tesk::StringFactory::GetFactory("en_US");
    const auto linkLocal = V6("fe80::1/64", Type::LinkLayer, HN::Ipv6Scope::LinkLocal);
    const auto autoconf = V6("2001:db8:10:0:5a:4bff:fea1:1000/64", Type::Autoconf);
    const auto dhcp = V6("2001:db8::99/64", Type::Dhcp);
    const auto s1 = V6("2001:db8::1/64", Type::Static), s2 = V6("2001:db8::2/64", Type::Static),
               s3 = V6("2001:db8::3/64", Type::Static), s4 = V6("2001:db8::4/64", Type::Static);
    const std::string v4 = "\n   IP address is  192.168.10.21\n";
    const std::string l1 = "   IP address is  2001:db8::1/64\n";
    const std::string l2 = "   IP address is  2001:db8::2/64\n";
    const std::string l3 = "   IP address is  2001:db8::3/64\n";
    struct Case {
        bool dhcp;
        std::vector<HN::Ipv6Network> v6;
        std::string lines;
    } cases[] = {
        // Learnt addresses are never shown, even when they come first.
        {false, {linkLocal, autoconf, s1, dhcp, s2}, v4 + l1 + l2},
        {true, {linkLocal, autoconf, dhcp}, ""},
        // A static address of link-local scope is not shown either.
        {true, {V6("fe80::9/64", Type::Static, HN::Ipv6Scope::LinkLocal), s1}, "\n" + l1},
        // Three are shown whole, more as two and "...".
        {true, {s1, s2, s3}, "\n" + l1 + l2 + l3},
        {true, {s1, autoconf, s2, s3, s4}, "\n" + l1 + l2 + "   ...\n"},
    };
    for (const Case& c : cases) {
        HN::IpConfig config;
        config.SetIpv4Address(HN::Ipv4Address("192.168.10.21"));
        config.SetIpv6Networks(c.v6);
        EXPECT_EQ(Tesk::RestartAddressLines(config, c.dhcp), c.lines)
            << "dhcp " << c.dhcp << ", " << c.v6.size() << " addresses";
    }
}

}  // namespace
