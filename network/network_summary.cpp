#include "network/network_summary.h"

#include <cstdio>

#include "ui/markup_escape.h"
#include "ui/string_ids.h"
#include "ui/strings.h"

namespace Tesk {

namespace HN = HostCtl::Network;

namespace {

std::string S(std::uint32_t id) {
    return Str(id);
}

std::string OrNotSet(const std::string& text) {
    return text.empty() ? S(StrId::NotSet) : EscapeHostText(text);
}

std::string Ipv4Text(const HN::Ipv4Address& address) {
    return address.IsAnyAddress() ? S(StrId::NotSet) : address.GetStringAddress();
}

std::string ServerText(const std::unique_ptr<HN::IpAddress>& server) {
    return server && !server->IsAnyAddress() ? EscapeHostText(server->GetStringAddress())
                                             : S(StrId::NotSet);
}

std::string Adapters(const PendingNetworkConfig& p, const AdapterDescriber& describe) {
    std::string text = "{color:white}";
    for (const auto& name : p.adapters)
        text += EscapeHostText(name) + " (" + EscapeHostText(describe(name)) + ")\n";
    return text + "\n{/color}{color:light-grey}" + S(StrId::NetworkAdaptersHelp) + "{/color}";
}

std::string Vlan(const PendingNetworkConfig& p) {
    return "{color:white}" + (p.vlanId ? std::to_string(p.vlanId) : S(StrId::NotSet)) +
           "\n\n{/color}{color:light-grey}" + S(StrId::VlanHelp) + "{/color}";
}

std::string Ipv4(const PendingNetworkConfig& p) {
    const std::string mode = p.mode.GetUseDhcp()          ? S(StrId::Automatic)
                             : p.address.GetIpv4UseNone() ? S(StrId::None)
                                                          : S(StrId::Manual);
    return "{color:white}" + mode + "\n\n" + S(StrId::Ipv4Address) + ": " +
           Ipv4Text(p.address.GetIpv4Address()) + "\n" + S(StrId::SubnetMask) + ": " +
           Ipv4Text(p.address.GetIpv4Netmask()) + "\n" + S(StrId::DefaultGateway) + ": " +
           Ipv4Text(p.address.GetIpv4Gateway()) + "\n\n{/color}{color:light-grey}" +
           S(StrId::Ipv4ConfigurationHelp) + "{/color}";
}

std::string Ipv6(const PendingNetworkConfig& p) {
    std::string text =
        "{color:white}" + S(p.ipv6Pending ? StrId::Ipv6IsEnabled : StrId::Ipv6IsDisabled) + "\n\n";
    if (p.ipv6Pending && !p.ipv6Host)
        return text + "{/color}{color:light-grey}" + S(StrId::Ipv6EnabledAfterReboot) + "{/color}";
    if (!p.ipv6Host)
        return text + "{/color}{color:light-grey}" + S(StrId::Ipv6SupportHelp) + "{/color}";
    const bool automatic = p.mode.GetUseIpv6Dhcp() || p.mode.GetUseIpv6RouterAdvertised();
    text +=
        S(automatic ? StrId::Automatic : StrId::Manual) + "\n\n" + S(StrId::Ipv6Addresses) + ":\n";
    const auto& nets = p.address.GetIpv6Networks();
    if (nets.empty()) text += S(StrId::NotSet) + "\n";
    for (std::size_t i = 0; i < nets.size() && i < 3; ++i)
        text += EscapeHostText(nets[i].GetStringAddress()) + "\n";
    if (nets.size() > 3) text += "...\n";
    const HN::Ipv6Address& gateway = p.address.GetIpv6Gateway();
    text += "\n" + S(StrId::DefaultGateway) + ":\n" +
            (gateway.IsAnyAddress() ? S(StrId::NotSet)
                                    : EscapeHostText(gateway.GetScopedStringAddress()));
    return text + "\n\n{/color}{color:light-grey}" + S(StrId::Ipv6ConfigurationHelp) + "{/color}";
}

std::string Dns(const PendingNetworkConfig& p) {
    const bool ipv6Second =
        p.primaryDns && p.alternateDns && p.primaryDns->IsIpv4() && p.alternateDns->IsIpv6();
    return "{color:white}" + S(p.mode.GetDhcpDns() ? StrId::Automatic : StrId::Manual) + "\n\n" +
           S(StrId::PrimaryDnsServer) + ":\n" + ServerText(p.primaryDns) + "\n" +
           S(ipv6Second ? StrId::Ipv6DnsServer : StrId::AlternateDnsServer) + ":\n" +
           ServerText(p.alternateDns) + "\n\n" + S(StrId::Hostname) + "\n" + OrNotSet(p.hostname) +
           "\n\n{/color}{color:light-grey}" + S(StrId::DnsConfigurationHelp) + "{/color}";
}

std::string Suffixes(const PendingNetworkConfig& p) {
    return "{color:white}" + OrNotSet(p.suffixText) + "\n\n{/color}{color:light-grey}" +
           S(StrId::CustomDnsSuffixesHelp) + "{/color}";
}

}  // namespace

std::string NetworkSummary(NetworkTopic topic, const PendingNetworkConfig& pending,
                           const AdapterDescriber& describe) {
    switch (topic) {
        case NetworkTopic::Adapters:
            return Adapters(pending, describe);
        case NetworkTopic::Vlan:
            return Vlan(pending);
        case NetworkTopic::Ipv4:
            return Ipv4(pending);
        case NetworkTopic::Ipv6:
            return Ipv6(pending);
        case NetworkTopic::Dns:
            return Dns(pending);
        case NetworkTopic::Suffixes:
            return Suffixes(pending);
    }
    return {};
}

}  // namespace Tesk
