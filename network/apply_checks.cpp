// The checks before applying the management network.
#include "network/apply_checks.h"

#include <cctype>

namespace Tesk {
namespace {

namespace HN = HostCtl::Network;

bool InNet(std::uint32_t a, std::uint32_t net, std::uint32_t mask) {
    return (a & mask) == net;
}

// A problem of an IPv4 address of the host itself (empty: none).
std::string Ipv4HostProblem(const std::string& what, const HN::Ipv4Address& address) {
    const std::uint32_t a = address.GetAddress();
    const std::string text = what + " " + address.GetStringAddress();
    if (a == 0) return text + " is no address of a host.";
    if (a == 0xffffffffu) return text + " is the broadcast address of every network.";
    if (InNet(a, 0xe0000000u, 0xf0000000u)) return text + " is a multicast address.";
    if (InNet(a, 0x7f000000u, 0xff000000u)) return text + " is a loopback address.";
    return "";
}

std::string Ipv6HostProblem(const std::string& what, const HN::Ipv6Address& address,
                            const std::string& text) {
    const auto& b = address.GetBytes();
    bool zeroUpTo15 = true;
    for (int i = 0; i < 15; ++i) zeroUpTo15 = zeroUpTo15 && b[i] == 0;
    if (zeroUpTo15 && b[15] == 0) return what + " " + text + " is no address of a host.";
    if (zeroUpTo15 && b[15] == 1) return what + " " + text + " is the loopback address.";
    if (b[0] == 0xff) return what + " " + text + " is a multicast address.";
    return "";
}

void Add(std::vector<std::string>& list, std::string problem) {
    if (!problem.empty()) list.push_back(std::move(problem));
}

void CheckAdapters(const PendingNetworkConfig& p, const LinkProbe& linkUp,
                   std::vector<std::string>& out) {
    if (p.onDistributedSwitch || p.adapters.empty()) return;
    std::string names;
    for (const auto& name : p.adapters) {
        if (linkUp(name).value_or(true)) return;
        names += (names.empty() ? "" : ", ") + name;
    }
    out.push_back("No chosen network adapter has a link (" + names + ").");
}

void CheckIpv4(const PendingNetworkConfig& p, std::vector<std::string>& out) {
    if (p.mode.GetUseDhcp() || p.address.GetIpv4UseNone()) return;
    const HN::Ipv4Address& address = p.address.GetIpv4Address();
    const HN::Ipv4Address& mask = p.address.GetIpv4Netmask();
    const HN::Ipv4Address& gateway = p.address.GetIpv4Gateway();
    const std::uint32_t a = address.GetAddress(), m = mask.GetAddress(), g = gateway.GetAddress();
    std::string addressProblem = Ipv4HostProblem("The IPv4 address", address);
    const bool addressOk = addressProblem.empty();
    Add(out, std::move(addressProblem));
    if (m == 0)
        out.push_back(
            "The subnet mask 0.0.0.0 puts every address of every network in the "
            "host's subnet.");
    else if (m == 0xffffffffu)
        out.push_back(
            "The subnet mask 255.255.255.255 leaves no other address in the host's "
            "subnet, not even its gateway.");
    else if (addressOk && m != 0xfffffffeu && (a & ~m) == 0)
        out.push_back("The IPv4 address " + address.GetStringAddress() +
                      " is the address of its subnet, not of a host.");
    else if (addressOk && m != 0xfffffffeu && (a | m) == 0xffffffffu)
        out.push_back("The IPv4 address " + address.GetStringAddress() +
                      " is the broadcast address of its subnet.");

    const std::string gw = "The default gateway " + gateway.GetStringAddress();
    if (g == 0)
        out.push_back(gw + " is no gateway: the host reaches no other network.");
    else if (g == a)
        out.push_back(gw + " is the host's own address.");
    else if (m != 0 && (g & m) != (a & m))
        out.push_back(gw + " is outside the host's subnet " +
                      HN::Ipv4Address::FromHostOrder(a & m).GetStringAddress() + "/" +
                      std::to_string(mask.GetPrefixLength()) + ".");
}

void CheckIpv6(const PendingNetworkConfig& p, std::vector<std::string>& out) {
    if (!p.ipv6Pending) return;
    for (const auto& network : p.address.GetIpv6Networks()) {
        if (network.GetIpv6AddressType() != HN::Ipv6AddressType::Static) continue;
        Add(out,
            Ipv6HostProblem("The IPv6 address", network.GetAddress(), network.GetStringAddress()));
        if (network.GetPrefixLength() == 0 && !network.GetAddress().IsAnyAddress())
            out.push_back("The IPv6 prefix length 0 of " + network.GetStringAddress() +
                          " puts every address in the host's subnet.");
    }
    if (!p.ipv6GatewayChanged || p.mode.GetUseIpv6RouterAdvertised()) return;
    const HN::Ipv6Address& gateway = p.address.GetIpv6Gateway();
    const std::string text = gateway.GetScopedStringAddress();
    if (gateway.IsAnyAddress())
        out.push_back("The default IPv6 gateway " + text +
                      " is no gateway: the host reaches no other IPv6 network.");
    else
        Add(out, Ipv6HostProblem("The default IPv6 gateway", gateway, text));
}

void CheckNameServer(const HN::IpAddress* server, std::vector<std::string>& out) {
    if (!server || server->IsAnyAddress()) return;
    const std::string what = "The name server " + server->GetStringAddress();
    if (server->IsIpv4()) {
        const std::uint32_t a = static_cast<const HN::Ipv4Address&>(*server).GetAddress();
        if (a == 0xffffffffu)
            out.push_back(what + " is the broadcast address of every network.");
        else if (InNet(a, 0x7f000000u, 0xff000000u))
            out.push_back(what + " is the host itself, which runs no name server.");
        else if (InNet(a, 0xe0000000u, 0xf0000000u))
            out.push_back(what + " is a multicast address.");
        return;
    }
    const auto& v6 = static_cast<const HN::Ipv6Address&>(*server);
    if (!v6.IsAnyAddress()) Add(out, Ipv6HostProblem("The name server", v6, v6.GetStringAddress()));
}

}  // namespace

std::vector<std::string> ProblemsBeforeApplying(const PendingNetworkConfig& p,
                                                const LinkProbe& linkUp) {
    std::vector<std::string> out;
    CheckAdapters(p, linkUp, out);
    if (!p.onDistributedSwitch && p.vlanId == 4095)
        out.push_back(
            "VLAN 4095 carries every VLAN to virtual machines; the management "
            "interface cannot use it.");
    CheckIpv4(p, out);
    CheckIpv6(p, out);
    if (!p.mode.GetDhcpDns()) {
        CheckNameServer(p.primaryDns.get(), out);
        CheckNameServer(p.alternateDns.get(), out);
    }
    return out;
}

std::string HostnameProblem(const std::string& text) {
    if (text.empty()) return "A host name cannot be empty.";
    if (text.size() > 253) return "A host name has at most 253 characters.";
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t end = text.find('.', start);
        if (end == std::string::npos) end = text.size();
        const std::string label = text.substr(start, end - start);
        const bool last = end == text.size();
        // One final dot ("host.example.") ends a fully qualified name.
        if (label.empty() && !(last && start > 0))
            return "Each part of a host name between dots needs at least one character.";
        if (label.size() > 63) return "Each part of a host name has at most 63 characters.";
        for (char c : label)
            if (!std::isalnum(static_cast<unsigned char>(c)) && c != '-')
                return "A host name has only letters, digits, \"-\" and \".\".";
        if (!label.empty() && (label.front() == '-' || label.back() == '-'))
            return "A part of a host name cannot begin or end with \"-\".";
        start = end + 1;
    }
    return "";
}

}  // namespace Tesk
