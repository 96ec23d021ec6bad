// When a management network change counts as applied: what the kernel must
// show on the link for each mode, read from made-up kernel states.
#include <gtest/gtest.h>

#include "linuxhost/apply_wait.h"

namespace LinuxHost {
namespace {

namespace HN = HostCtl::Network;

ManagementConfig Static(const char* gateway) {
    ManagementConfig c;
    c.bridge = "br0";
    c.ip.SetUseDhcp(false, false);
    c.ip.SetIpv4Address(HN::Ipv4Address("192.168.77.20"));
    c.ip.SetIpv4Netmask(HN::Ipv4Address("255.255.255.0"));
    if (*gateway != '\0') c.ip.SetIpv4Gateway(HN::Ipv4Address(gateway));
    c.ip.EnableIpv6();
    c.ip.AddIpv6Network(HN::Ipv6Network("fd77::20/64"));
    return c;
}

KernelNet Kernel(std::vector<AddrFact> addrs, const char* gateway4 = "") {
    KernelNet net;
    LinkFact bridge;
    bridge.index = 3;
    bridge.name = "br0";
    net.links.push_back(bridge);
    net.addrs = std::move(addrs);
    net.gateway4 = gateway4;
    net.gateway4Link = *gateway4 != '\0' ? 3 : 0;
    return net;
}

const AddrFact kStatic4{3, false, "192.168.77.20", 24, false, true, false};
const AddrFact kOld4{3, false, "10.0.0.5", 8, false, true, false};
const AddrFact kLease4{3, false, "192.168.77.10", 24, false, false, false};
const AddrFact kStatic6{3, true, "fd77:0::20", 64, false, true, false};
const AddrFact kOld6{3, true, "2001:db8::9", 64, false, true, false};

TEST(ApplyWait, TheLinkMustCarryTheChangeAndNothingOfTheOneBefore) {
    ManagementConfig none = Static("");
    none.ip.SetUseDhcp(false, true);
    ManagementConfig dhcp = Static("");
    dhcp.ip.SetUseDhcp(true);
    const struct {
        const char* name;
        ManagementConfig config;
        KernelNet net;
        std::string missing;
    } cases[] = {
        {"static, done", Static("192.168.77.1"), Kernel({kStatic4, kStatic6}, "192.168.77.1"), ""},
        {"static, old address still there", Static(""), Kernel({kOld4, kStatic4, kStatic6}),
         "no IPv4 address but ours (10.0.0.5/8)"},
        {"static, not yet added", Static(""), Kernel({kStatic6}), "192.168.77.20/24"},
        {"static, gateway not yet routed", Static("10.9.0.1"), Kernel({kStatic4, kStatic6}),
         "gateway 10.9.0.1"},
        {"static, old gateway still routed", Static(""),
         Kernel({kStatic4, kStatic6}, "192.168.77.1"), "no IPv4 gateway (192.168.77.1)"},
        {"static, IPv6 address not yet added", Static(""), Kernel({kStatic4}), "fd77::20/64"},
        {"static, old IPv6 address still there", Static(""), Kernel({kStatic4, kStatic6, kOld6}),
         "no static IPv6 address but ours (2001:db8::9/64)"},
        {"none, address not yet removed", none, Kernel({kStatic4, kStatic6}),
         "no IPv4 address but ours (192.168.77.20/24)"},
        {"none, done", none, Kernel({kStatic6}), ""},
        {"DHCP, static address not yet removed", dhcp, Kernel({kStatic4, kLease4, kStatic6}),
         "no static IPv4 address (192.168.77.20/24)"},
        {"DHCP, no lease yet", dhcp, Kernel({kStatic6}), "an IPv4 address from DHCP"},
        {"DHCP, done", dhcp, Kernel({kLease4, kStatic6}, "192.168.77.1"), ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(NotYetApplied(c.config, c.net, c.net.links[0]), c.missing) << c.name;
}

}  // namespace
}  // namespace LinuxHost
