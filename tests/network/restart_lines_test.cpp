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

class RestartLines : public ::testing::Test {
protected:
    void SetUp() override { Tesk::StringFactory::GetFactory("en_US"); }
    HN::IpConfig config_;
};

TEST_F(RestartLines, StaticShowsIpv4ThenTheFirstKindOfIpv6Addresses) {
    config_.SetIpv4Address(HN::Ipv4Address("192.168.10.21"));
    config_.SetIpv6Networks(
        {V6("fe80::1/64", HN::Ipv6AddressType::LinkLayer, HN::Ipv6Scope::LinkLocal),
         V6("2001:db8::21/64", HN::Ipv6AddressType::Static),
         V6("2001:db8::99/64", HN::Ipv6AddressType::Autoconf),
         V6("2001:db8::22/64", HN::Ipv6AddressType::Static)});
    EXPECT_EQ(Tesk::RestartAddressLines(config_, false),
              "\n   IP address is  192.168.10.21\n"
              "   IP address is  2001:db8::21/64\n"
              "   IP address is  2001:db8::22/64\n");
}

TEST_F(RestartLines, DhcpShowsNoIpv4LineAndAtMostThreeIpv6Addresses) {
    config_.SetIpv4Address(HN::Ipv4Address("192.168.10.150"));
    EXPECT_EQ(Tesk::RestartAddressLines(config_, true), "");
    std::vector<HN::Ipv6Network> four;
    for (const char* a : {"2001:db8::1/64", "2001:db8::2/64", "2001:db8::3/64", "2001:db8::4/64"})
        four.push_back(V6(a, HN::Ipv6AddressType::Dhcp));
    config_.SetIpv6Networks({four.begin(), four.begin() + 3});
    EXPECT_EQ(Tesk::RestartAddressLines(config_, true),
              "\n   IP address is  2001:db8::1/64\n"
              "   IP address is  2001:db8::2/64\n"
              "   IP address is  2001:db8::3/64\n");
    config_.SetIpv6Networks(four);
    EXPECT_EQ(Tesk::RestartAddressLines(config_, true),
              "\n   IP address is  2001:db8::1/64\n"
              "   IP address is  2001:db8::2/64\n"
              "   ...\n");
}

}  // namespace
