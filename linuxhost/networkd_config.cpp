#include "linuxhost/networkd_config.h"

#include <sstream>

namespace LinuxHost {
namespace {

namespace HN = HostCtl::Network;

constexpr char kHeader[] =
    "# The management network, written by the console; changed there, not by hand.\n";

// One file's sections in order, each with its lines in order.
using Lines = std::vector<std::pair<std::string, std::string>>;
struct Ini {
    std::vector<std::pair<std::string, Lines>> sections;

    Lines& Section(const std::string& name) {
        for (auto& [title, lines] : sections)
            if (title == name) return lines;
        sections.emplace_back(name, Lines{});
        return sections.back().second;
    }
    std::string Text() const {
        std::string text = kHeader;
        for (const auto& [title, lines] : sections) {
            text += "\n[" + title + "]\n";
            for (const auto& [key, value] : lines) text += key + "=" + value + "\n";
        }
        return text;
    }
    // Every value of key in section, in order.
    std::vector<std::string> All(const std::string& section, const std::string& key) const {
        std::vector<std::string> values;
        for (const auto& [title, lines] : sections)
            if (title == section)
                for (const auto& [k, v] : lines)
                    if (k == key) values.push_back(v);
        return values;
    }
    std::string One(const std::string& section, const std::string& key) const {
        auto values = All(section, key);
        return values.empty() ? std::string() : values.back();
    }
};

Ini Parse(const std::string& text) {
    Ini ini;
    std::istringstream in(text);
    Lines* current = nullptr;
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line[0] == '#' || line[0] == ';') continue;
        if (line.front() == '[' && line.back() == ']') {
            current = &ini.Section(line.substr(1, line.size() - 2));
            continue;
        }
        const auto equals = line.find('=');
        if (current != nullptr && equals != std::string::npos)
            current->emplace_back(line.substr(0, equals), line.substr(equals + 1));
    }
    return ini;
}

std::vector<std::string> Words(const std::string& text) {
    std::vector<std::string> words;
    std::istringstream in(text);
    for (std::string word; in >> word;) words.push_back(word);
    return words;
}

std::string Join(const std::vector<std::string>& words) {
    std::string text;
    for (const auto& word : words) text += (text.empty() ? "" : " ") + word;
    return text;
}

std::string FileName(const std::string& link, const char* suffix) {
    return kOurFilePrefix + link + suffix;
}

void Match(Ini& ini, const std::string& names) {
    ini.Section("Match").emplace_back("Name", names);
}

// Whether the IPv4 gateway is in the static address's subnet.
bool OnSubnet(const HN::IpConfig& ip) {
    const std::uint32_t mask = ip.GetIpv4Netmask().GetAddress();
    return (ip.GetIpv4Gateway().GetAddress() & mask) == (ip.GetIpv4Address().GetAddress() & mask);
}

// The addresses, gateways and name servers of the management link.
Ini AddressFile(const ManagementConfig& c) {
    const HN::IpConfig& ip = c.ip;
    Ini ini;
    Match(ini, c.Interface());
    Lines& net = ini.Section("Network");
    const bool v6 = ip.IsIpv6Enabled();
    const bool dhcp4 = ip.GetUseDhcp();
    const bool dhcp6 = v6 && ip.GetUseIpv6Dhcp();
    net.emplace_back("DHCP", dhcp4 && dhcp6 ? "yes" : dhcp4 ? "ipv4" : dhcp6 ? "ipv6" : "no");
    net.emplace_back("LinkLocalAddressing", v6 ? "ipv6" : "no");
    net.emplace_back("IPv6AcceptRA", v6 && ip.GetUseIpv6RouterAdvertised() ? "yes" : "no");
    const bool static4 = !dhcp4 && !ip.GetIpv4UseNone();
    const bool gateway4 = static4 && !ip.GetIpv4Gateway().IsAnyAddress();
    if (static4) {
        net.emplace_back("Address", ip.GetIpv4Address().GetStringAddress() + "/" +
                                        std::to_string(ip.GetIpv4Netmask().GetPrefixLength()));
        if (gateway4 && OnSubnet(ip))
            net.emplace_back("Gateway", ip.GetIpv4Gateway().GetStringAddress());
    }
    if (v6) {
        for (const auto& network : ip.GetIpv6Networks())
            if (network.GetIpv6AddressType() == HN::Ipv6AddressType::Static &&
                !network.GetAddress().IsLinkLocal())
                net.emplace_back("Address", network.GetStringAddress());
        if (!ip.GetIpv6Gateway().IsAnyAddress())
            net.emplace_back("Gateway", ip.GetIpv6Gateway().GetStringAddress());
    }
    for (const auto& server : c.nameServers) net.emplace_back("DNS", server);
    if (!c.searchDomains.empty()) net.emplace_back("Domains", Join(c.searchDomains));
    // networkd refuses a gateway outside the address's subnet unless told
    // that it is reached on the link all the same.
    if (gateway4 && !OnSubnet(ip)) {
        Lines& route = ini.Section("Route");
        route.emplace_back("Gateway", ip.GetIpv4Gateway().GetStringAddress());
        route.emplace_back("GatewayOnLink", "yes");
    }
    const std::string useDns = ip.GetDhcpDns() ? "yes" : "no";
    if (dhcp4) ini.Section("DHCPv4").emplace_back("UseDNS", useDns);
    if (dhcp6) {
        Lines& dhcpv6 = ini.Section("DHCPv6");
        dhcpv6.emplace_back("UseDNS", useDns);
        // Without router advertisements nothing else starts the client.
        if (!ip.GetUseIpv6RouterAdvertised()) dhcpv6.emplace_back("WithoutRA", "solicit");
    }
    return ini;
}

void ReadAddressFile(const Ini& ini, ManagementConfig& c) {
    HN::IpConfig& ip = c.ip;
    const std::string dhcp = ini.One("Network", "DHCP");
    const bool dhcp4 = dhcp == "yes" || dhcp == "ipv4";
    const bool dhcp6 = dhcp == "yes" || dhcp == "ipv6";
    const bool v6 = ini.One("Network", "LinkLocalAddressing") != "no";
    bool static4 = false;
    for (const auto& address : ini.All("Network", "Address")) {
        const auto slash = address.find('/');
        const std::string host = address.substr(0, slash);
        const int prefix = slash == std::string::npos ? -1 : std::stoi(address.substr(slash + 1));
        if (HN::Ipv4Address::IsValidAddress(host) && prefix >= 0 && prefix <= 32) {
            ip.SetIpv4Address(HN::Ipv4Address(host));
            ip.SetIpv4Netmask(
                HN::Ipv4Address::FromHostOrder(prefix == 0 ? 0 : ~0u << (32 - prefix)));
            static4 = true;
        } else if (HN::Ipv6Network::IsValidAddressAndNetmask(address)) {
            ip.AddIpv6Network(HN::Ipv6Network(address));
        }
    }
    std::vector<std::string> gateways = ini.All("Network", "Gateway");
    for (const auto& gateway : ini.All("Route", "Gateway")) gateways.push_back(gateway);
    for (const auto& gateway : gateways) {
        if (HN::Ipv4Address::IsValidAddress(gateway))
            ip.SetIpv4Gateway(HN::Ipv4Address(gateway));
        else if (HN::Ipv6Address::IsValidAddress(gateway))
            ip.SetIpv6Gateway(HN::Ipv6Address(gateway));
    }
    ip.SetUseDhcp(dhcp4, !dhcp4 && !static4);
    ip.EnableIpv6(v6);
    ip.SetUseIpv6Dhcp(v6 && dhcp6);
    ip.SetUseIpv6RouterAdvertised(v6 && ini.One("Network", "IPv6AcceptRA") == "yes");
    const std::string useDns = dhcp4   ? ini.One("DHCPv4", "UseDNS")
                               : dhcp6 ? ini.One("DHCPv6", "UseDNS")
                                       : "no";
    ip.SetDhcpDns(useDns == "yes");
    c.nameServers = ini.All("Network", "DNS");
    c.searchDomains = Words(ini.One("Network", "Domains"));
}

}  // namespace

std::string ManagementConfig::Interface() const {
    return vlanId == 0 ? bridge : bridge + "." + std::to_string(vlanId);
}

NetworkdFiles RenderNetworkd(const ManagementConfig& c) {
    NetworkdFiles files;
    Ini netdev;
    Lines& dev = netdev.Section("NetDev");
    dev.emplace_back("Name", c.bridge);
    dev.emplace_back("Kind", "bridge");
    if (!c.mac.empty()) dev.emplace_back("MACAddress", c.mac);
    files[FileName(c.bridge, ".netdev")] = netdev.Text();
    if (!c.uplinks.empty()) {
        Ini ports;
        Match(ports, Join(c.uplinks));
        ports.Section("Network").emplace_back("Bridge", c.bridge);
        files[FileName(c.bridge, "-uplinks.network")] = ports.Text();
    }
    if (c.vlanId == 0) {
        files[FileName(c.bridge, ".network")] = AddressFile(c).Text();
        return files;
    }
    Ini bridge;
    Match(bridge, c.bridge);
    Lines& net = bridge.Section("Network");
    net.emplace_back("VLAN", c.Interface());
    net.emplace_back("LinkLocalAddressing", "no");
    net.emplace_back("ConfigureWithoutCarrier", "yes");
    files[FileName(c.bridge, ".network")] = bridge.Text();
    Ini vlan;
    Lines& vdev = vlan.Section("NetDev");
    vdev.emplace_back("Name", c.Interface());
    vdev.emplace_back("Kind", "vlan");
    vlan.Section("VLAN").emplace_back("Id", std::to_string(c.vlanId));
    files[FileName(c.Interface(), ".netdev")] = vlan.Text();
    files[FileName(c.Interface(), ".network")] = AddressFile(c).Text();
    return files;
}

std::optional<ManagementConfig> ParseNetworkd(const NetworkdFiles& files,
                                              const std::string& bridge) {
    const auto netdev = files.find(FileName(bridge, ".netdev"));
    const auto network = files.find(FileName(bridge, ".network"));
    if (netdev == files.end() || network == files.end()) return std::nullopt;
    ManagementConfig c;
    c.bridge = bridge;
    c.mac = Parse(netdev->second).One("NetDev", "MACAddress");
    if (auto ports = files.find(FileName(bridge, "-uplinks.network")); ports != files.end())
        c.uplinks = Words(Parse(ports->second).One("Match", "Name"));
    Ini addresses = Parse(network->second);
    const std::string vlanLink = addresses.One("Network", "VLAN");
    if (!vlanLink.empty()) {
        const auto vlan = files.find(FileName(vlanLink, ".netdev"));
        const auto vlanNetwork = files.find(FileName(vlanLink, ".network"));
        if (vlan == files.end() || vlanNetwork == files.end()) return std::nullopt;
        try {
            c.vlanId = static_cast<std::uint16_t>(std::stoi(Parse(vlan->second).One("VLAN", "Id")));
        } catch (const std::exception&) {
            return std::nullopt;
        }
        addresses = Parse(vlanNetwork->second);
    }
    ReadAddressFile(addresses, c);
    return c;
}

}  // namespace LinuxHost
