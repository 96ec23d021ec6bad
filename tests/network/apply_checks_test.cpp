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

void Ipv4(Tesk::PendingNetworkConfig& p, const char* address, const char* mask,
          const char* gateway) {
    p.address.SetIpv4Address(HN::Ipv4Address(address));
    p.address.SetIpv4Netmask(HN::Ipv4Address(mask));
    p.address.SetIpv4Gateway(HN::Ipv4Address(gateway));
}

void Ipv6(Tesk::PendingNetworkConfig& p, const char* network) {
    p.address.ClearIpv6Networks();
    p.address.AddIpv6Network(HN::Ipv6Network(network));
}

TEST(ChecksBeforeApplying, NameEachValueThatCutsTheHostOff) {
    struct Case {
        const char* what;
        std::function<void(Tesk::PendingNetworkConfig&)> change;
        bool linkUp;
        const char* problem;  // null: none
    };
    auto v6gw = [](const char* a) {
        return [a](Tesk::PendingNetworkConfig& p) { p.address.SetIpv6Gateway(HN::Ipv6Address(a)); };
    };
    const Case cases[] = {
        {"sound", [](auto&) {}, true, nullptr},
        {"no link", [](auto&) {}, false, "No chosen network adapter has a link (pnic0, pnic1)."},
        {"VLAN 4095", [](auto& p) { p.vlanId = 4095; }, true, "VLAN 4095 carries every VLAN"},
        {"0.0.0.0", [](auto& p) { Ipv4(p, "0.0.0.0", "255.255.255.0", "192.168.1.1"); }, true,
         "The IPv4 address 0.0.0.0 is no address of a host."},
        {"broadcast", [](auto& p) { Ipv4(p, "255.255.255.255", "255.255.255.0", "192.168.1.1"); },
         true, "255.255.255.255 is the broadcast address of every network"},
        {"loopback", [](auto& p) { Ipv4(p, "127.0.0.1", "255.0.0.0", "127.0.0.2"); }, true,
         "127.0.0.1 is a loopback address"},
        {"subnet", [](auto& p) { Ipv4(p, "192.168.1.0", "255.255.255.0", "192.168.1.1"); }, true,
         "192.168.1.0 is the address of its subnet"},
        {"mask 0", [](auto& p) { Ipv4(p, "192.168.1.10", "0.0.0.0", "192.168.1.1"); }, true,
         "The subnet mask 0.0.0.0"},
        {"gateway outside", [](auto& p) { Ipv4(p, "192.168.1.10", "255.255.255.0", "10.0.0.1"); },
         true, "The default gateway 10.0.0.1 is outside the host's subnet 192.168.1.0/24."},
        {"gateway own", [](auto& p) { Ipv4(p, "192.168.1.10", "255.255.255.0", "192.168.1.10"); },
         true, "The default gateway 192.168.1.10 is the host's own address."},
        {"::/0", [](auto& p) { Ipv6(p, "::/0"); }, true, "The IPv6 address ::/0 is no address"},
        {"ff02::1/64", [](auto& p) { Ipv6(p, "ff02::1/64"); }, true,
         "ff02::1/64 is a multicast address"},
        {"v6 gateway ff02::2", v6gw("ff02::2"), true,
         "The default IPv6 gateway ff02::2 is a multicast address"},
        {"DNS loopback",
         [](auto& p) { p.alternateDns = std::make_unique<HN::Ipv4Address>("127.0.0.1"); }, true,
         "The name server 127.0.0.1 is the host itself"},
        {"DHCP ignores the static fields",
         [](auto& p) {
             Ipv4(p, "0.0.0.0", "0.0.0.0", "0.0.0.0");
             p.mode.SetUseDhcp(true);
         },
         true, nullptr},
    };
    for (const Case& c : cases) {
        auto p = Sound();
        c.change(p);
        const bool up = c.linkUp;
        const auto problems =
            Tesk::ProblemsBeforeApplying(p, [up](const std::string&) { return up; });
        if (!c.problem) {
            EXPECT_TRUE(problems.empty()) << c.what << ": " << problems.front();
            continue;
        }
        ASSERT_FALSE(problems.empty()) << c.what;
        EXPECT_NE(problems.front().find(c.problem), std::string::npos)
            << c.what << ": " << problems.front();
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
