// Taking one field of the management network from one configuration into
// another moves that field's values and nothing else: what keeps a second
// console from writing back a field it did not change.
#include <gtest/gtest.h>

#include "network/network_fields.h"

namespace {

namespace HN = HostCtl::Network;
using Tesk::NetworkField;
using Tesk::PendingNetworkConfig;

// A configuration in which every field differs from the other variant's.
PendingNetworkConfig Variant(bool second) {
    PendingNetworkConfig p;
    p.adapters =
        second ? std::vector<std::string>{"pnic2"} : std::vector<std::string>{"pnic0", "pnic1"};
    p.activeUplinks = second ? 2 : 1;
    p.vlanId = second ? 42 : 0;
    p.mode.SetUseDhcp(false);
    p.address.SetUseDhcp(false, false);
    p.address.SetIpv4Address(HN::Ipv4Address(second ? "10.0.0.5" : "192.168.10.21"));
    p.address.SetIpv4Netmask(HN::Ipv4Address(second ? "255.0.0.0" : "255.255.255.0"));
    p.address.SetIpv4Gateway(HN::Ipv4Address(second ? "10.0.0.1" : "192.168.10.1"));
    p.ipv6Pending = p.ipv6Host = true;
    p.mode.SetUseIpv6Dhcp(second);
    p.address.EnableIpv6();
    p.address.SetIpv6Networks({HN::Ipv6Network(second ? "2001:db8::5/64" : "2001:db8::21/64")});
    p.address.SetIpv6Gateway(HN::Ipv6Address(second ? "2001:db8::1" : "2001:db8::fe"));
    p.mode.SetDhcpDns(false);
    p.primaryDns = HN::IpAddress::Parse(second ? "10.0.0.53" : "192.168.10.2");
    p.hostname = second ? "other-host" : "tesk-host01";
    p.suffixText = second ? "corp.example" : "lab.example";
    return p;
}

TEST(NetworkFields, TakingAFieldMovesItsValuesAndNothingElse) {
    const PendingNetworkConfig from = Variant(true);
    const Tesk::NetworkValues fromValues = Tesk::ValuesOf(from);
    const Tesk::NetworkValues before = Tesk::ValuesOf(Variant(false));
    for (std::size_t i = 0; i < Tesk::kNetworkFieldCount; ++i) {
        const auto field = static_cast<NetworkField>(i);
        SCOPED_TRACE(Tesk::FieldLabel(field));
        ASSERT_NE(before[i], fromValues[i]);
        PendingNetworkConfig into = Variant(false);
        Tesk::TakeField(into, from, field);
        const Tesk::NetworkValues after = Tesk::ValuesOf(into);
        for (std::size_t j = 0; j < Tesk::kNetworkFieldCount; ++j)
            EXPECT_EQ(after[j], j == i ? fromValues[j] : before[j]) << j;
    }
}

}  // namespace
