// The management network's fields as texts, and taking one field from one
// pending configuration into another.
#include "network/network_fields.h"

#include "host/queries.h"

namespace Tesk {
namespace {

namespace HN = HostCtl::Network;

std::string Server(const std::unique_ptr<HN::IpAddress>& server) {
    return server && !server->IsAnyAddress() ? server->GetStringAddress() : "none";
}

std::string Ipv4(const PendingNetworkConfig& p) {
    if (p.mode.GetUseDhcp()) return "DHCP";
    if (p.address.GetIpv4UseNone()) return "none";
    return "static " + p.address.GetIpv4Address().GetStringAddress() + "/" +
           p.address.GetIpv4Netmask().GetStringAddress() + ", gateway " +
           p.address.GetIpv4Gateway().GetStringAddress();
}

std::string Ipv6(const PendingNetworkConfig& p) {
    if (!p.ipv6Pending) return "off";
    std::string text = "on";
    if (p.mode.GetUseIpv6Dhcp()) text += ", DHCPv6";
    if (p.mode.GetUseIpv6RouterAdvertised()) text += ", router advertisements";
    for (const auto& network : p.address.GetIpv6Networks())
        text += ", " + network.GetAddress().GetStringAddress() + "/" +
                std::to_string(network.GetPrefixLength());
    return text + ", gateway " + p.address.GetIpv6Gateway().GetScopedStringAddress();
}

std::unique_ptr<HN::IpAddress> CloneOf(const std::unique_ptr<HN::IpAddress>& address) {
    return address ? address->Clone() : nullptr;
}

}  // namespace

NetworkValues ValuesOf(const PendingNetworkConfig& p) {
    NetworkValues values;
    auto at = [&values](NetworkField field) -> std::string& {
        return values[static_cast<std::size_t>(field)];
    };
    at(NetworkField::Adapters) =
        JoinNames(p.adapters, ", ") + " (" + std::to_string(p.activeUplinks) + " active)";
    at(NetworkField::Vlan) = p.vlanId ? std::to_string(p.vlanId) : "none";
    at(NetworkField::Ipv4) = Ipv4(p);
    at(NetworkField::Ipv6) = Ipv6(p);
    at(NetworkField::DnsServers) =
        p.mode.GetDhcpDns() ? "DHCP" : Server(p.primaryDns) + ", " + Server(p.alternateDns);
    at(NetworkField::Hostname) = p.hostname;
    at(NetworkField::Suffixes) = p.suffixText;
    return values;
}

const char* FieldLabel(NetworkField field) {
    switch (field) {
        case NetworkField::Adapters:
            return "Network adapters";
        case NetworkField::Vlan:
            return "VLAN";
        case NetworkField::Ipv4:
            return "IPv4 configuration";
        case NetworkField::Ipv6:
            return "IPv6 configuration";
        case NetworkField::DnsServers:
            return "DNS servers";
        case NetworkField::Hostname:
            return "Host name";
        case NetworkField::Suffixes:
            return "DNS suffixes";
    }
    return "";
}

void TakeField(PendingNetworkConfig& into, const PendingNetworkConfig& from, NetworkField field) {
    switch (field) {
        case NetworkField::Adapters:
            into.adapters = from.adapters;
            into.activeUplinks = from.activeUplinks;
            return;
        case NetworkField::Vlan:
            into.vlanId = from.vlanId;
            return;
        case NetworkField::Ipv4:
            into.mode.SetUseDhcp(from.mode.GetUseDhcp());
            into.address.SetUseDhcp(from.address.GetUseDhcp(), from.address.GetIpv4UseNone());
            into.address.SetIpv4Address(from.address.GetIpv4Address());
            into.address.SetIpv4Netmask(from.address.GetIpv4Netmask());
            into.address.SetIpv4Gateway(from.address.GetIpv4Gateway());
            return;
        case NetworkField::Ipv6:
            into.ipv6Pending = from.ipv6Pending;
            into.ipv6GatewayChanged = from.ipv6GatewayChanged;
            into.mode.SetUseIpv6Dhcp(from.mode.GetUseIpv6Dhcp());
            into.mode.SetUseIpv6RouterAdvertised(from.mode.GetUseIpv6RouterAdvertised());
            into.address.EnableIpv6(from.address.IsIpv6Enabled());
            into.address.SetUseIpv6Dhcp(from.address.GetUseIpv6Dhcp());
            into.address.SetUseIpv6RouterAdvertised(from.address.GetUseIpv6RouterAdvertised());
            into.address.SetIpv6Networks(from.address.GetIpv6Networks());
            into.address.SetIpv6Gateway(from.address.GetIpv6Gateway());
            return;
        case NetworkField::DnsServers:
            into.mode.SetDhcpDns(from.mode.GetDhcpDns());
            into.address.SetDhcpDns(from.address.GetDhcpDns());
            into.primaryDns = CloneOf(from.primaryDns);
            into.alternateDns = CloneOf(from.alternateDns);
            return;
        case NetworkField::Hostname:
            into.hostname = from.hostname;
            return;
        case NetworkField::Suffixes:
            into.suffixes = from.suffixes;
            into.suffixText = from.suffixText;
            return;
    }
}

}  // namespace Tesk
