// What the management interface reaches on the outside network.
#include "simhost/outside_network.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>
#include <vector>

#include "hostctl/exception.h"
#include "hostctl/network_types.h"
#include "simhost/netmodel.h"
#include "simhost/state_values.h"

namespace ZrkCtl::Network::Outside {
namespace {

namespace HN = HostCtl::Network;
using ZrkCtl::Sim::Array;
using ZrkCtl::Sim::Flag;
using ZrkCtl::Sim::Member;
using ZrkCtl::Sim::Object;
using ZrkCtl::Sim::Text;
using ZrkCtl::Sim::Texts;

// An address of either family, without zone; none for anything else.
std::optional<std::array<std::uint8_t, 16>> Ipv6Bytes(const std::string& text) {
    if (!HN::Ipv6Address::IsValidAddress(text)) return std::nullopt;
    return HN::Ipv6Address(text).GetBytes();
}
std::optional<std::uint32_t> Ipv4Value(const std::string& text) {
    if (!HN::Ipv4Address::IsValidAddress(text)) return std::nullopt;
    return HN::Ipv4Address(text).GetAddress();
}

std::uint32_t Mask(int prefix) {
    return prefix <= 0 ? 0 : prefix >= 32 ? 0xffffffffu : ~((1u << (32 - prefix)) - 1);
}

// "192.168.10.0/24" as network and mask.
std::optional<std::pair<std::uint32_t, std::uint32_t>> Ipv4Subnet(const std::string& text) {
    auto slash = text.find('/');
    if (slash == std::string::npos) return std::nullopt;
    auto base = Ipv4Value(text.substr(0, slash));
    const std::string len = text.substr(slash + 1);
    if (!base || len.empty() || len.size() > 2 ||
        !std::all_of(len.begin(), len.end(), [](char c) { return std::isdigit(c); }))
        return std::nullopt;
    const int prefix = std::stoi(len);
    if (prefix > 32) return std::nullopt;
    return std::make_pair(*base & Mask(prefix), Mask(prefix));
}

bool InPrefix(const std::array<std::uint8_t, 16>& a, const std::array<std::uint8_t, 16>& b,
              int prefix) {
    for (int bit = 0; bit < prefix && bit < 128; ++bit) {
        const int mask = 0x80 >> (bit % 8);
        if ((a[bit / 8] & mask) != (b[bit / 8] & mask)) return false;
    }
    return true;
}

bool LinkLocal(const std::array<std::uint8_t, 16>& a) {
    return a[0] == 0xfe && (a[1] & 0xc0) == 0x80;
}

// The same address, compared by value (IPv6 without zone).
bool SameAddress(const std::string& a, const std::string& b) {
    if (auto x = Ipv4Value(a), y = Ipv4Value(b); x && y) return *x == *y;
    auto x = Ipv6Bytes(a), y = Ipv6Bytes(b);
    return x && y && *x == *y;
}

// Every address that answers on one VLAN of a segment: its gateways, its
// name servers and its other hosts.
std::vector<std::string> Members(const Json& network) {
    std::vector<std::string> all = Texts(network, "hosts");
    for (const char* key : {"ipv4Gateway", "ipv6Gateway"})
        if (!Text(network, key).empty()) all.push_back(Text(network, key));
    for (const std::string& dns : Texts(network, "dnsServers")) all.push_back(dns);
    return all;
}

bool Lists(const std::vector<std::string>& addresses, const std::string& target) {
    return std::any_of(addresses.begin(), addresses.end(),
                       [&](const std::string& a) { return SameAddress(a, target); });
}

// An address the outside network has anywhere: on any VLAN of any segment, or
// one of the hosts beyond the gateways.
bool KnownAnywhere(const Json& outside, const std::string& target) {
    if (Lists(Texts(outside, "remoteHosts"), target)) return true;
    for (const Json& segment : Array(outside, "segments"))
        for (const Json& network : Array(segment, "networks"))
            if (Lists(Members(network), target)) return true;
    return false;
}

struct Attachment {
    const Json* nic = nullptr;
    std::vector<const Json*> networks;  // VLANs of segments the interface reaches
    std::string why;
};

// The VLAN networks the management interface is attached to through its
// active uplinks that have a link.
Attachment Attach(const Json& state) {
    Attachment a;
    const Json& net = Model::Net(state);
    const std::string name = Text(net, "managementInterface");
    const Json* nic = name.empty() ? nullptr : Model::FindByName(Model::List(net, "zrkNics"), name);
    if (!nic) return {nullptr, {}, "no management interface"};
    a.nic = nic;
    if (!Flag(*nic, "enabled", true) || !Flag(*nic, "up", true)) {
        a.why = "management interface " + name + " is down";
        return a;
    }
    const Json& connection = Object(*nic, "connection");
    std::vector<std::string> uplinks;
    int vlan = 0;
    if (Text(connection, "type") == "portGroup") {
        auto [vswitch, group] = Model::FindPortGroup(net, Text(connection, "portGroup"));
        if (!group) return {nic, {}, "port group of " + name + " not found"};
        vlan = ZrkCtl::Sim::Integer<int>(*group, "vlanId", 0);
        uplinks = Model::EffectivePolicy(*vswitch, *group).GetActiveUplinks();
    } else if (Text(connection, "type") == "qdsPort") {
        const Json* qds =
            Model::FindByName(Model::List(net, "distributedSwitches"), Text(connection, "switch"));
        if (!qds) return {nic, {}, "distributed switch of " + name + " not found"};
        // A port with settings of its own carries their VLAN over their active
        // uplinks, and nothing while it is blocked; any other port is untagged
        // over every uplink of the switch.
        const Json* settings = Member(Object(*qds, "portSettings"), Text(connection, "port"));
        std::vector<std::string> active;
        if (settings) {
            if (Flag(*settings, "blocked")) {
                a.why = "the distributed port of " + name + " is blocked";
                return a;
            }
            vlan = ZrkCtl::Sim::Integer<int>(*settings, "vlanId", 0);
            active = Texts(*settings, "activeUplinks");
        }
        for (const auto& [pnic, port] : Object(*qds, "uplinks").items())
            if (!settings ||
                (port.is_string() &&
                 std::find(active.begin(), active.end(), port.get<std::string>()) != active.end()))
                uplinks.push_back(pnic);
    } else {
        return {nic, {}, name + " is not connected"};
    }
    const Json& outside = Object(net, "outside");
    bool anyLink = false;
    for (const std::string& uplink : uplinks) {
        const Json* pnic = Model::FindByName(Model::List(net, "pnics"), uplink);
        if (!pnic || !Flag(*pnic, "linkUp")) continue;
        anyLink = true;
        for (const Json& segment : Array(outside, "segments")) {
            auto cabled = Texts(segment, "pnics");
            if (std::find(cabled.begin(), cabled.end(), uplink) == cabled.end()) continue;
            for (const Json& network : Array(segment, "networks"))
                if (ZrkCtl::Sim::Integer<int>(network, "vlanId", 0) == vlan &&
                    std::find(a.networks.begin(), a.networks.end(), &network) == a.networks.end())
                    a.networks.push_back(&network);
        }
    }
    if (!anyLink)
        a.why = "no active uplink with link";
    else if (a.networks.empty())
        a.why = "no network carries VLAN " + std::to_string(vlan) + " on the uplinks";
    return a;
}

bool ReachesIpv4(const Json& state, const Json& outside, const Json& network, const Json& current,
                 std::uint32_t target) {
    auto own = Ipv4Value(Text(current, "ipv4Address"));
    auto mask = Ipv4Value(Text(current, "ipv4Netmask"));
    auto subnet = Ipv4Subnet(Text(network, "ipv4Subnet"));
    if (!own || *own == 0 || !mask || !subnet) return false;
    if ((*own & subnet->second) != subnet->first) return false;  // wrong subnet for this VLAN
    if (target == *own) return true;
    const std::string text = HN::Ipv4Address::FromHostOrder(target).GetStringAddress();
    const bool onLink =
        (target & *mask) == (*own & *mask) && (target & subnet->second) == subnet->first;
    if (onLink) return Lists(Members(network), text);
    // Beyond the subnet: through the default gateway, when it is this VLAN's
    // router and lies on the interface's subnet.
    auto gateway = Ipv4Value(Text(Object(Model::Net(state), "routing"), "ipv4Gateway"));
    auto router = Ipv4Value(Text(network, "ipv4Gateway"));
    if (!gateway || !router || *gateway != *router) return false;
    if ((*gateway & *mask) != (*own & *mask)) return false;
    return KnownAnywhere(outside, text);
}

bool ReachesIpv6(const Json& state, const Json& outside, const Json& network, const Json& current,
                 const std::string& targetText) {
    const auto target = *Ipv6Bytes(targetText);
    std::vector<HN::Ipv6Network> own;
    for (const Json& entry : Array(current, "ipv6Addresses"))
        own.push_back(Model::Ipv6NetworkFromJson(entry));
    if (own.empty()) return false;  // IPv6 off
    for (const auto& address : own)
        if (address.GetAddress().GetBytes() == target) return true;
    if (LinkLocal(target)) return Lists(Members(network), targetText);
    const std::string prefixText = Text(network, "ipv6Prefix");
    if (!HN::Ipv6Network::IsValidAddressAndNetmask(prefixText)) return false;
    const HN::Ipv6Network prefix(prefixText);
    const auto& base = prefix.GetAddress().GetBytes();
    const bool inPrefix = std::any_of(own.begin(), own.end(), [&](const HN::Ipv6Network& a) {
        return InPrefix(a.GetAddress().GetBytes(), base, prefix.GetPrefixLength());
    });
    if (!inPrefix) return false;  // no address on this VLAN's prefix
    if (InPrefix(target, base, prefix.GetPrefixLength()))
        return Lists(Members(network), targetText);
    const std::string gateway = Text(Object(Model::Net(state), "routing"), "ipv6Gateway");
    auto gatewayBytes = Ipv6Bytes(gateway);
    if (!gatewayBytes) return false;
    const bool routerHere = SameAddress(gateway, Text(network, "ipv6Gateway")) ||
                            (LinkLocal(*gatewayBytes) && Lists(Members(network), gateway));
    return routerHere && KnownAnywhere(outside, targetText);
}

std::string Lower(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

}  // namespace

Reach Reaches(const Json& state, const std::string& targetText) {
    const std::string target = targetText.substr(0, targetText.find('%'));
    if (const Json* list = Member(state, "reachable")) {
        if (list->is_array())
            for (const Json& entry : *list)
                if (entry.is_string() && SameAddress(entry.get<std::string>(), target))
                    return {true, {}};
        return {false, "not in the reachable list"};
    }
    auto v4 = Ipv4Value(target);
    if (!v4 && !Ipv6Bytes(target)) return {false, "unknown host " + target};
    Attachment a = Attach(state);
    if (!a.why.empty()) return {false, a.why};
    const Json& net = Model::Net(state);
    const Json current = Model::CurrentOf(net, *a.nic);
    const Json& outside = Object(net, "outside");
    for (const Json* network : a.networks) {
        if (v4 ? ReachesIpv4(state, outside, *network, current, *v4)
               : ReachesIpv6(state, outside, *network, current, target))
            return {true, {}};
    }
    return {false, "no route to " + target};
}

bool Resolves(const Json& state, const std::string& name) {
    if (name.empty()) return false;
    const Json& net = Model::Net(state);
    const Json& outside = Object(net, "outside");
    const Json& dns = Object(net, "dns");

    // Name servers that answer: configured, reached, and serving DNS outside.
    std::vector<std::string> servers = Texts(dns, "nameServers");
    for (const std::string& s : Texts(dns, "ipv6NameServers")) servers.push_back(s);
    bool answered = false;
    for (const std::string& server : servers) {
        bool serves = false;
        for (const Json& segment : Array(outside, "segments"))
            for (const Json& network : Array(segment, "networks"))
                serves = serves || Lists(Texts(network, "dnsServers"), server);
        if (serves && Reaches(state, server).reached) {
            answered = true;
            break;
        }
    }
    if (!answered) return false;

    std::vector<std::string> candidates{name};
    if (name.back() != '.') {
        for (const std::string& suffix : Texts(dns, "searchDomains"))
            candidates.push_back(name + "." + suffix);
        if (!Text(dns, "domain").empty()) candidates.push_back(name + "." + Text(dns, "domain"));
    }
    const Json& names = Object(outside, "names");
    for (std::string candidate : candidates) {
        if (candidate.ends_with('.')) candidate.pop_back();
        for (const auto& [known, addresses] : names.items())
            if (Lower(known) == Lower(candidate) && addresses.is_array() && !addresses.empty())
                return true;
    }
    return false;
}

}  // namespace ZrkCtl::Network::Outside
