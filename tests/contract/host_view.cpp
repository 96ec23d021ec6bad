// The host as the interfaces read it, one fact per line.
#include "tests/contract/host_view.h"

#include <sstream>

#include "hostctl/exception.h"
#include "hostctl/offers.h"

namespace TeskContract {

namespace HN = HostCtl::Network;

namespace {

std::string Describe(const std::vector<std::string>& names) {
    std::string text = "[";
    for (const auto& name : names) text += (text.size() > 1 ? "," : "") + name;
    return text + "]";
}

std::string Describe(const HN::NicTeamingPolicy& policy) {
    return "active=" + Describe(policy.GetActiveUplinks()) +
           " standby=" + Describe(policy.GetStandbyUplinks()) +
           " max=" + std::to_string(policy.GetMaxActiveUplinks());
}

std::string Describe(const HN::IpConfig& c) {
    std::ostringstream out;
    out << (c.GetUseDhcp()       ? "dhcp"
            : c.GetIpv4UseNone() ? "none"
                                 : "static")
        << " " << c.GetIpv4Address().GetStringAddress() << "/"
        << c.GetIpv4Netmask().GetStringAddress() << " via " << c.GetIpv4Gateway().GetStringAddress()
        << " ipv6=" << c.IsIpv6Enabled() << " dhcpv6=" << c.GetUseIpv6Dhcp()
        << " ra=" << c.GetUseIpv6RouterAdvertised() << " dhcpDns=" << c.GetDhcpDns() << " via6 "
        << c.GetIpv6Gateway().GetScopedStringAddress();
    for (const auto& n : c.GetIpv6Networks())
        out << " " << n.GetStringAddress() << ":" << static_cast<int>(n.GetIpv6AddressType());
    return out.str();
}

std::string DescribeConnection(const HN::ConnectionPoint& point) {
    switch (point.GetType()) {
        case HN::ConnectionType::PortGroup:
            return "group " + point.GetSwitchName() + "/" + point.GetPortGroup().GetName();
        case HN::ConnectionType::QdsPort:
            return "port " + point.GetSwitchName() + "/" + point.GetPortId();
        case HN::ConnectionType::None:
            break;
    }
    return "none";
}

void Network(const HostCtl::Backend& host, std::ostream& out) {
    auto info = host.GetNetworkInfo();
    out << "ipv6 now " << info->IsZrkIpv6Enabled() << "\n";
    for (const auto& pnic : info->GetPnics(HN::PnicKind::All)) {
        pnic->Refresh();
        const auto pci = pnic->GetPciDevice();
        out << "pnic " << pnic->GetName() << " " << pnic->GetMacAddress().GetStringAddress()
            << " link=" << pnic->IsLinkUp() << " pci=" << (pci ? pci->GetDescription() : "none")
            << "\n";
    }
    auto switches = host.GetVirtualSwitchInfo();
    for (const auto& s : switches->GetVirtualSwitches(HN::PortsetKind::All)) {
        out << "switch " << s->GetName() << " ports=" << s->GetNumPorts() << "/"
            << s->GetConfiguredPorts() << " used=" << s->GetUsedPorts()
            << " uplinks=" << Describe(s->GetUplinks()) << " " << Describe(s->GetTeamingPolicy())
            << "\n";
    }
    for (const auto& group : info->GetAllPortGroups(HN::PortsetKind::All))
        out << "group " << group.GetVirtualSwitchName() << "/" << group.GetName()
            << " vlan=" << group.GetVlanId() << " clients=" << group.GetActiveClients() << " "
            << Describe(group.GetTeamingPolicy()) << "\n";
    for (const auto& q : switches->GetQdsSwitches()) {
        out << "qds " << q->GetName() << " own=" << q->IsOwnKind() << " uplinks=";
        for (const auto& [pnic, port] : q->GetUplinkMap()) out << pnic << ":" << port << ",";
        out << "\n";
    }
    for (const auto& nic : host.GetZerkelNicInfo()->GetZerkelNics(HN::PortsetKind::All)) {
        nic->Refresh();
        out << "nic " << nic->GetName() << " " << nic->GetMacAddress().GetStringAddress()
            << " usable=" << nic->IsUsable() << " on "
            << DescribeConnection(nic->GetPortConnection()) << "\n  configured "
            << Describe(nic->GetConfiguredIpConfig()) << "\n  in effect "
            << Describe(nic->GetIpConfig()) << "\n";
    }
    info->UpdateManagementInterface();
    const auto management = info->GetManagementInterface();
    out << "management " << (management ? management->GetName() : "none") << "\n";

    auto routing = host.GetRoutingInfo("defaultNetStack");
    out << "gateways " << routing->GetZerkelDefaultGateway().GetStringAddress() << " "
        << routing->GetIpv6ZerkelDefaultGateway().GetScopedStringAddress() << "\n";
    auto dns = host.GetDnsConfig("defaultNetStack");
    dns->Refresh();
    out << "dns " << dns->GetHostname() << " " << dns->GetDomain() << " servers=";
    for (const auto& s : dns->GetNameServers()) out << s.GetStringAddress() << ",";
    for (const auto& s : dns->GetIpv6NameServers(true)) out << s.GetScopedStringAddress() << ",";
    out << " search=" << Describe(dns->GetSearchDomains()) << "\n";
}

void System(const HostCtl::Backend& host, std::ostream& out) {
    out << "keyboard " << host.GetSystemInfo()->GetKeyboardLayout() << "\n";
    const auto option = host.GetAdvancedOptions()->GetOption("/UserVars/TeskTimeOut");
    out << "idle timeout "
        << (!option ? "none"
            : option->type == HostCtl::Adv::OptionValue::Type::Integer
                ? std::to_string(option->intValue)
                : option->stringValue)
        << "\n";
    // A host that does not offer the card login has no readers to ask.
    if (const std::string why = host.WhyNotOffered(HostCtl::Feature::SmartCardLogin);
        !why.empty()) {
        out << "no readers: " << why << "\n";
    } else {
        auto cards = host.GetSmartCardInfo();
        for (const auto& slot : cards->GetAllSlots()) {
            out << "reader " << slot.index << " " << slot.name << " ";
            try {
                out << Describe(cards->GetToken(slot).userIds) << "\n";
            } catch (const HostCtl::Lib::HostCtlException&) {
                out << "no card\n";  // an empty reader has no token
            }
        }
    }
    out << "running vms " << host.GetResourceInfo()->HasRunningVirtualMachines() << "\n";
}

}  // namespace

std::string HostView(const HostCtl::Backend& host) {
    std::ostringstream out;
    Network(host, out);
    System(host, out);
    return out.str();
}

}  // namespace TeskContract
