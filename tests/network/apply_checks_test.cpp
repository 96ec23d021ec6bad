// The checks before applying the management network: each value that would
// cut the host off is named, a sound configuration gives no problem, and host
// names follow the rules for DNS names.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "network/apply_checks.h"

namespace {

namespace HN = HostCtl::Network;

Tesk::PendingNetworkConfig Sound() {
    Tesk::PendingNetworkConfig p;
    p.adapters = {"pnic0", "pnic1"};
    p.address.SetUseDhcp(false, false);
    p.address.SetIpv4Address(HN::Ipv4Address("192.168.1.10"));
    p.address.SetIpv4Netmask(HN::Ipv4Address("255.255.255.0"));
    p.address.SetIpv4Gateway(HN::Ipv4Address("192.168.1.1"));
    p.ipv6Pending = true;
    p.address.AddIpv6Network(HN::Ipv6Network("2001:db8::10/64"));
    p.address.SetIpv6Gateway(HN::Ipv6Address("2001:db8::1"));
    p.ipv6GatewayChanged = true;
    p.primaryDns = std::make_unique<HN::Ipv4Address>("192.168.1.9");
    p.alternateDns = std::make_unique<HN::Ipv6Address>("2001:db8::9");
    return p;
}

using Change = std::function<void(Tesk::PendingNetworkConfig&)>;

// A static IPv4 configuration, a sole IPv6 address, an IPv6 gateway.
Change V4(const char* address, const char* mask, const char* gateway) {
    return [=](Tesk::PendingNetworkConfig& p) {
        p.address.SetIpv4Address(HN::Ipv4Address(address));
        p.address.SetIpv4Netmask(HN::Ipv4Address(mask));
        p.address.SetIpv4Gateway(HN::Ipv4Address(gateway));
    };
}
Change V6(const char* network) {
    return [=](Tesk::PendingNetworkConfig& p) {
        p.address.ClearIpv6Networks();
        p.address.AddIpv6Network(HN::Ipv6Network(network));
    };
}
Change V6Gateway(const char* address) {
    return
        [=](Tesk::PendingNetworkConfig& p) { p.address.SetIpv6Gateway(HN::Ipv6Address(address)); };
}

TEST(ChecksBeforeApplying, NameEachValueThatCutsTheHostOff) {
    const Change none = [](auto&) {};
    const struct {
        Change change;
        bool linkUp;
        const char* problem;  // null: none
    } cases[] = {
        {none, true, nullptr},
        {none, false, "No chosen network adapter has a link (pnic0, pnic1)."},
        {[](auto& p) { p.vlanId = 4095; }, true, "VLAN 4095 carries every VLAN"},
        {V4("0.0.0.0", "255.255.255.0", "192.168.1.1"), true,
         "The IPv4 address 0.0.0.0 is no address of a host."},
        {V4("255.255.255.255", "255.255.255.0", "192.168.1.1"), true,
         "255.255.255.255 is the broadcast address of every network"},
        {V4("127.0.0.1", "255.0.0.0", "127.0.0.2"), true, "127.0.0.1 is a loopback address"},
        {V4("192.168.1.0", "255.255.255.0", "192.168.1.1"), true,
         "192.168.1.0 is the address of its subnet"},
        {V4("192.168.1.10", "0.0.0.0", "192.168.1.1"), true, "The subnet mask 0.0.0.0"},
        {V4("192.168.1.10", "255.255.255.0", "10.0.0.1"), true,
         "The default gateway 10.0.0.1 is outside the host's subnet 192.168.1.0/24."},
        {V4("192.168.1.10", "255.255.255.0", "192.168.1.10"), true,
         "The default gateway 192.168.1.10 is the host's own address."},
        {V6("::/0"), true, "The IPv6 address ::/0 is no address"},
        {V6("ff02::1/64"), true, "ff02::1/64 is a multicast address"},
        {V6Gateway("ff02::2"), true, "The default IPv6 gateway ff02::2 is a multicast address"},
        {[](auto& p) { p.alternateDns = std::make_unique<HN::Ipv4Address>("127.0.0.1"); }, true,
         "The name server 127.0.0.1 is the host itself"},
        // DHCP ignores the static fields.
        {[](auto& p) {
             V4("0.0.0.0", "0.0.0.0", "0.0.0.0")(p);
             p.mode.SetUseDhcp(true);
         },
         true, nullptr},
    };
    for (const auto& c : cases) {
        auto p = Sound();
        c.change(p);
        const bool up = c.linkUp;
        const auto problems =
            Tesk::ProblemsBeforeApplying(p, [up](const std::string&) { return up; });
        const std::string first = problems.empty() ? "" : problems.front();
        if (!c.problem)
            EXPECT_EQ(first, "");
        else
            EXPECT_NE(first.find(c.problem), std::string::npos) << c.problem << ": " << first;
    }
}

TEST(ChecksBeforeApplying, HostNamesFollowTheRulesForDnsNames) {
    const std::string label63(63, 'a');
    for (const std::string& bad :
         std::initializer_list<std::string>{"", "-", ".", "a..b", "-host", "host-", "ho_st",
                                            ".host", std::string(255, 'a'), label63 + "a.example"})
        EXPECT_NE(Tesk::HostnameProblem(bad), "") << '"' << bad << '"';
    for (const std::string& good : std::initializer_list<std::string>{
             "hv-01", "host.example.com", "host.example.com.", "h", label63 + ".example", "123"})
        EXPECT_EQ(Tesk::HostnameProblem(good), "") << '"' << good << '"';
}

}  // namespace
