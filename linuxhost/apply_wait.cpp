#include "linuxhost/apply_wait.h"

#include <poll.h>

#include <algorithm>

#include "hostctl/exception.h"
#include "linuxhost/networkd_bus.h"
#include "platform/syslog.h"

namespace LinuxHost {
namespace {

namespace HN = HostCtl::Network;

// The kernel's text and ours may write one address differently.
std::string Canonical(const std::string& address, bool ipv6) {
    if (ipv6)
        return HN::Ipv6Address::IsValidAddress(address)
                   ? HN::Ipv6Address(address).GetStringAddress()
                   : address;
    return HN::Ipv4Address::IsValidAddress(address) ? HN::Ipv4Address(address).GetStringAddress()
                                                    : address;
}

std::string Text(const AddrFact& addr) {
    return Canonical(addr.address, addr.ipv6) + "/" + std::to_string(addr.prefix);
}

std::string MissingIpv4(const HN::IpConfig& ip, const KernelNet& net, const LinkFact& link) {
    std::vector<const AddrFact*> on;
    for (const auto& addr : net.addrs)
        if (addr.index == link.index && !addr.ipv6) on.push_back(&addr);
    if (ip.GetUseDhcp()) {
        for (const AddrFact* addr : on)
            if (addr->permanent) return "no static IPv4 address (" + Text(*addr) + ")";
        return on.empty() ? "an IPv4 address from DHCP" : "";
    }
    std::string wanted;
    if (!ip.GetIpv4UseNone())
        wanted = ip.GetIpv4Address().GetStringAddress() + "/" +
                 std::to_string(ip.GetIpv4Netmask().GetPrefixLength());
    for (const AddrFact* addr : on)
        if (Text(*addr) != wanted) return "no IPv4 address but ours (" + Text(*addr) + ")";
    if (!wanted.empty() && on.empty()) return wanted;
    const HN::Ipv4Address& gateway = ip.GetIpv4Gateway();
    const bool routed = net.gateway4Link == link.index;
    if (!gateway.IsAnyAddress() && !ip.GetIpv4UseNone() &&
        (!routed || Canonical(net.gateway4, false) != gateway.GetStringAddress()))
        return "gateway " + gateway.GetStringAddress();
    if ((gateway.IsAnyAddress() || ip.GetIpv4UseNone()) && routed)
        return "no IPv4 gateway (" + net.gateway4 + ")";
    return "";
}

std::string MissingIpv6(const HN::IpConfig& ip, const KernelNet& net, const LinkFact& link) {
    std::vector<std::string> wanted;
    if (ip.IsIpv6Enabled())
        for (const auto& network : ip.GetIpv6Networks())
            if (network.GetIpv6AddressType() == HN::Ipv6AddressType::Static &&
                !network.GetAddress().IsLinkLocal())
                wanted.push_back(network.GetAddress().GetStringAddress() + "/" +
                                 std::to_string(network.GetPrefixLength()));
    std::vector<std::string> on;
    for (const auto& addr : net.addrs) {
        if (addr.index != link.index || !addr.ipv6 || addr.linkLocal) continue;
        on.push_back(Text(addr));
        if (addr.permanent && std::find(wanted.begin(), wanted.end(), on.back()) == wanted.end())
            return "no static IPv6 address but ours (" + on.back() + ")";
    }
    for (const auto& address : wanted)
        if (std::find(on.begin(), on.end(), address) == on.end()) return address;
    const HN::Ipv6Address& gateway = ip.GetIpv6Gateway();
    const bool routed = net.gateway6Link == link.index;
    if (ip.IsIpv6Enabled() && !gateway.IsAnyAddress() &&
        (!routed || Canonical(net.gateway6, true) != gateway.GetStringAddress()))
        return "gateway " + gateway.GetStringAddress();
    // Without a gateway of ours only router advertisements may give one.
    if ((!ip.IsIpv6Enabled() || (gateway.IsAnyAddress() && !ip.GetUseIpv6RouterAdvertised())) &&
        routed)
        return "no IPv6 gateway (" + net.gateway6 + ")";
    return "";
}

}  // namespace

std::string NotYetApplied(const ManagementConfig& config, const KernelNet& net,
                          const LinkFact& link) {
    std::string missing = MissingIpv4(config.ip, net, link);
    return missing.empty() ? MissingIpv6(config.ip, net, link) : missing;
}

bool WaitApplied(const ManagementConfig& config, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    const auto kernel = WatchNetwork();
    Networkd::LinkStates networkd;
    std::string missing;
    for (;;) {
        // Emptied before the kernel is read: what changes after wakes poll().
        kernel->Drain();
        networkd.Drain();
        const KernelNet net = ReadKernelNet();
        const LinkFact* link = net.Link(config.Interface());
        missing =
            link == nullptr ? "the link " + config.Interface() : NotYetApplied(config, net, *link);
        bool notified = false;
        if (missing.empty()) {
            const std::string state = networkd.State(link->index);
            if (!Networkd::Configuring(state)) return true;
            missing = "the end of systemd-networkd's work (" + state + ")";
            // A notification read while asking would not wake poll().
            notified = networkd.Drain();
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            end - std::chrono::steady_clock::now());
        if (left.count() <= 0) break;
        if (notified) continue;
        pollfd fds[] = {{kernel->Descriptor(), POLLIN, 0},
                        {networkd.Descriptor(), networkd.Events(), 0}};
        ::poll(fds, fds[1].fd < 0 ? 1 : 2, static_cast<int>(left.count()));
    }
    Tesk::Platform::Log(LOG_WARNING,
                        "The management network change is not yet applied to %s after %lld ms: "
                        "waiting for %s",
                        config.Interface().c_str(), static_cast<long long>(limit.count()),
                        missing.c_str());
    return false;
}

}  // namespace LinuxHost
