#include "linuxhost/management.h"
#include "linuxhost/fail.h"

#include <unistd.h>

#include <cstring>

#include "hostctl/exception.h"
#include "linuxhost/apply_wait.h"
#include "linuxhost/networkd_bus.h"
#include "linuxhost/nic_facts.h"
#include "linuxhost/options.h"
#include "linuxhost/resolv_conf.h"
#include "platform/syslog.h"

namespace LinuxHost {
namespace {

namespace HN = HostCtl::Network;
using HostCtl::Lib::HostCtlException;

// The bridge as the kernel has it, for a host without our files.
ManagementConfig FromKernel(const KernelNet& net, const LinkFact& bridge) {
    ManagementConfig c;
    c.bridge = bridge.name;
    c.mac = bridge.mac;
    for (const auto& link : net.links)
        if (link.master == bridge.index && IsPhysicalNic(link)) c.uplinks.push_back(link.name);
    HN::IpConfig& ip = c.ip;
    bool v4 = false, v4Dhcp = false, v6 = false, v6Dhcp = false, v6Ra = false;
    for (const auto& addr : net.addrs) {
        if (addr.index != bridge.index) continue;
        if (!addr.ipv6) {
            if (v4) continue;
            v4 = true;
            v4Dhcp = !addr.permanent;
            ip.SetIpv4Address(HN::Ipv4Address(addr.address));
            ip.SetIpv4Netmask(
                HN::Ipv4Address::FromHostOrder(addr.prefix == 0 ? 0 : ~0u << (32 - addr.prefix)));
            continue;
        }
        v6 = true;
        if (addr.linkLocal) continue;
        if (addr.managed)
            v6Dhcp = true;
        else if (!addr.permanent)
            v6Ra = true;
        else
            ip.AddIpv6Network(HN::Ipv6Network(HN::Ipv6Address(addr.address), addr.prefix));
    }
    if (v4Dhcp) {
        ip.SetIpv4Address({});
        ip.SetIpv4Netmask({});
    }
    ip.SetUseDhcp(v4Dhcp, !v4);
    ip.EnableIpv6(v6);
    ip.SetUseIpv6Dhcp(v6Dhcp);
    ip.SetUseIpv6RouterAdvertised(v6Ra || v6Dhcp);
    if (!v4Dhcp && net.gateway4Link == bridge.index)
        ip.SetIpv4Gateway(HN::Ipv4Address(net.gateway4));
    if (net.gateway6Link == bridge.index && !net.gateway6.empty() && !v6Ra)
        ip.SetIpv6Gateway(HN::Ipv6Address(net.gateway6));
    const ResolvConf resolv = ReadResolvConf();
    c.nameServers = resolv.nameServers;
    c.searchDomains = resolv.search;
    return c;
}

// networkd configures an uplink it finds before the bridge it names exists
// as failed: once the bridge is there, such uplinks are configured again.
void JoinUplinks(const ManagementConfig& config) {
    constexpr int kTries = 50;  // 5 s
    for (int i = 0; i < kTries; ++i) {
        const KernelNet net = ReadKernelNet();
        const LinkFact* bridge = net.Link(config.bridge);
        if (bridge == nullptr) {
            ::usleep(100 * 1000);
            continue;
        }
        for (const auto& name : config.uplinks)
            if (const LinkFact* uplink = net.Link(name); uplink && uplink->master != bridge->index)
                Networkd::Reconfigure(uplink->index);
        return;
    }
    Tesk::Platform::Log(LOG_WARNING, "Bridge %s did not appear; its uplinks stay as they are",
                        config.bridge.c_str());
}

}  // namespace

std::string ManagementBridge() {
    return Options::Text("network.bridge").value_or("br0");
}

std::optional<ManagementConfig> LoadManagement(const KernelNet& net) {
    const std::string bridge = ManagementBridge();
    if (auto config = ParseNetworkd(ReadOurFiles(), bridge)) return config;
    const LinkFact* link = net.Link(bridge);
    if (link == nullptr || link->kind != "bridge") return std::nullopt;
    return FromKernel(net, *link);
}

void SaveManagement(const ManagementConfig& config) {
    const KernelNet before = ReadKernelNet();
    const auto old = ParseNetworkd(ReadOurFiles(), config.bridge);
    const NetworkdFiles files = RenderNetworkd(config);
    WriteOurFiles(files);
    const LinkFact* bridge = before.Link(config.bridge);
    if (bridge != nullptr && !config.mac.empty() && bridge->mac != config.mac)
        SetLinkMac(config.bridge, config.mac);
    if (old && old->vlanId != 0 && old->Interface() != config.Interface())
        DeleteLink(old->Interface());
    Networkd::Reload();
    JoinUplinks(config);
    WaitApplied(config);
}

void ChangeManagement(const std::function<void(ManagementConfig&)>& change) {
    auto config = LoadManagement(ReadKernelNet());
    if (!config) Fail("The host has no management network (bridge " + ManagementBridge() + ")");
    change(*config);
    SaveManagement(*config);
}

void RemoveManagement() {
    const NetworkdFiles files = ReadOurFiles();
    WriteOurFiles({});
    // networkd leaves the links of removed .netdev files in place.
    for (const auto& [name, text] : files) {
        const std::string suffix = ".netdev";
        if (name.size() > suffix.size() && name.ends_with(suffix))
            DeleteLink(name.substr(std::strlen(kOurFilePrefix),
                                   name.size() - std::strlen(kOurFilePrefix) - suffix.size()));
    }
    Networkd::Reload();
}

}  // namespace LinuxHost
