// The network part of the simulated host's state: lookups, teaming policies,
// IP configurations and the addresses in effect.
#include "simhost/netmodel.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>
#include <vector>

#include "hostctl/exception.h"
#include "simhost/state_values.h"

namespace ZrkCtl::Network::Model {

namespace HN = HostCtl::Network;

namespace {

using ZrkCtl::Sim::Flag;
using ZrkCtl::Sim::Text;

// Gives config the networks, each once (the first of equal ones), in one
// pass however many the host lists.
void SetDistinctIpv6Networks(HN::IpConfig& config, std::vector<HN::Ipv6Network> networks) {
    std::set<std::pair<std::array<std::uint8_t, 16>, int>> seen;
    std::vector<HN::Ipv6Network> distinct;
    distinct.reserve(networks.size());
    for (auto& n : networks)
        if (seen.emplace(n.GetAddress().GetBytes(), n.GetPrefixLength()).second)
            distinct.push_back(std::move(n));
    config.SetIpv6Networks(std::move(distinct));
}

HN::Ipv4Address Ipv4(const Json& j, const char* key) {
    std::string text = Text(j, key);
    return HN::Ipv4Address::IsValidAddress(text) ? HN::Ipv4Address(text) : HN::Ipv4Address();
}

constexpr const char* kTypeNames[] = {"static",    "other",     "temporary", "deprecated",
                                      "tentative", "duplicate", "linkLayer", "autoconf",
                                      "random",    "dhcp"};
constexpr const char* kScopeNames[] = {"unknown", "linkLocal", "siteLocal", "global", "loopback"};

// A member given by name or by number; fallback when missing, a failure
// when it is neither a known name nor a number in range.
template <std::size_t N>
int IndexOf(const char* const (&names)[N], const Json& from, const char* key, int fallback) {
    const Json* value = ZrkCtl::Sim::Member(from, key);
    if (!value) return fallback;
    if (value->is_number_integer()) {
        const auto v = ZrkCtl::Sim::Integer<int>(from, key, fallback);
        if (v >= 0 && v < static_cast<int>(N)) return v;
    } else if (value->is_string()) {
        for (std::size_t i = 0; i < N; ++i)
            if (value->get<std::string>() == names[i]) return static_cast<int>(i);
    }
    ZrkCtl::Sim::WrongValue(key, *value, "a known name or number");
}

// The interface's part of a lease from "/network/dhcpServer".
bool Ipv4Lease(const Json& net, HN::Ipv4Address& address, HN::Ipv4Address& netmask) {
    if (!ZrkCtl::Sim::Member(net, "dhcpServer")) return false;
    const Json& server = ZrkCtl::Sim::Object(net, "dhcpServer");
    if (!Flag(server, "answers", true)) return false;
    address = Ipv4(server, "ipv4Address");
    netmask = Ipv4(server, "ipv4Netmask");
    return !address.IsAnyAddress();
}

// EUI-64 interface id on top of an IPv6 prefix of 64 bits.
HN::Ipv6Address WithInterfaceId(const HN::Ipv6Address& prefix, const HN::MacAddress& mac) {
    auto bytes = prefix.GetBytes();
    const auto& m = mac.GetBytes();
    std::uint8_t id[8] = {
        static_cast<std::uint8_t>(m[0] ^ 0x02), m[1], m[2], 0xff, 0xfe, m[3], m[4], m[5]};
    std::copy(std::begin(id), std::end(id), bytes.begin() + 8);
    char text[40];
    std::snprintf(text, sizeof text, "%x:%x:%x:%x:%x:%x:%x:%x", bytes[0] << 8 | bytes[1],
                  bytes[2] << 8 | bytes[3], bytes[4] << 8 | bytes[5], bytes[6] << 8 | bytes[7],
                  bytes[8] << 8 | bytes[9], bytes[10] << 8 | bytes[11], bytes[12] << 8 | bytes[13],
                  bytes[14] << 8 | bytes[15]);
    return HN::Ipv6Address(text);
}

}  // namespace

Json& Net(Json& state) {
    Json& net = state["network"];
    if (!net.is_object()) net = Json::object();
    return net;
}

const Json& Net(const Json& state) {
    return ZrkCtl::Sim::Object(state, "network");
}

Json* FindByName(Json& array, const std::string& name) {
    if (!array.is_array()) return nullptr;
    for (auto& item : array)
        if (Text(item, "name") == name) return &item;
    return nullptr;
}

const Json* FindByName(const Json& array, const std::string& name) {
    return FindByName(const_cast<Json&>(array), name);
}

Json& List(Json& net, const char* key) {
    Json& list = net[key];
    if (!list.is_array()) list = Json::array();
    return list;
}

const Json& List(const Json& net, const char* key) {
    return ZrkCtl::Sim::Entries(net, key);
}

Json& Require(Json& net, const char* key, const std::string& name, const char* what) {
    Json* found = FindByName(List(net, key), name);
    if (!found) throw HostCtl::Lib::HostCtlException(std::string(what) + " " + name + " not found");
    return *found;
}

const Json& Require(const Json& net, const char* key, const std::string& name, const char* what) {
    const Json* found = FindByName(List(net, key), name);
    if (!found) throw HostCtl::Lib::HostCtlException(std::string(what) + " " + name + " not found");
    return *found;
}

std::pair<Json*, Json*> FindPortGroup(Json& net, const std::string& name) {
    for (auto& vswitch : List(net, "standardSwitches")) {
        if (!vswitch.is_object()) continue;
        if (Json* pg = FindByName(vswitch["portGroups"], name)) return {&vswitch, pg};
    }
    return {nullptr, nullptr};
}

std::pair<const Json*, const Json*> FindPortGroup(const Json& net, const std::string& name) {
    for (const auto& vswitch : List(net, "standardSwitches"))
        if (const Json* pg = FindByName(List(vswitch, "portGroups"), name)) return {&vswitch, pg};
    return {nullptr, nullptr};
}

std::vector<std::string> Strings(const Json& array) {
    return ZrkCtl::Sim::TextsOf(array, "list of names");
}

HN::NicTeamingPolicy PolicyFromJson(const Json& j) {
    HN::NicTeamingPolicy p;
    if (j.is_null()) return p;
    p.SetActiveUplinks(ZrkCtl::Sim::Texts(j, "activeUplinks"));
    p.SetStandbyUplinks(ZrkCtl::Sim::Texts(j, "standbyUplinks"));
    if (ZrkCtl::Sim::Member(j, "maxActiveUplinks"))
        p.SetMaxActiveUplinks(ZrkCtl::Sim::Integer<std::int32_t>(j, "maxActiveUplinks", 0));
    return p;
}

Json PolicyToJson(const HN::NicTeamingPolicy& p) {
    return {{"activeUplinks", p.GetActiveUplinks()},
            {"standbyUplinks", p.GetStandbyUplinks()},
            {"maxActiveUplinks", p.GetMaxActiveUplinks()}};
}

HN::NicTeamingPolicy EffectivePolicy(const Json& vswitch, const Json& portGroup) {
    if (ZrkCtl::Sim::Member(portGroup, "teamingPolicy"))
        return PolicyFromJson(ZrkCtl::Sim::Object(portGroup, "teamingPolicy"));
    return PolicyFromJson(ZrkCtl::Sim::Object(vswitch, "teamingPolicy"));
}

const char* TypeName(HN::Ipv6AddressType type) {
    return kTypeNames[static_cast<int>(type)];
}
const char* ScopeName(HN::Ipv6Scope scope) {
    return kScopeNames[static_cast<int>(scope)];
}

HN::Ipv6Network Ipv6NetworkFromJson(const Json& j) {
    std::string address = Text(j, "address");
    int prefix = ZrkCtl::Sim::Integer<int>(j, "prefixLength", 64);
    HN::Ipv6Address a(address);
    auto type = static_cast<HN::Ipv6AddressType>(IndexOf(kTypeNames, j, "type", 0));
    int scopeFallback =
        static_cast<int>(a.IsLinkLocal() ? HN::Ipv6Scope::LinkLocal : HN::Ipv6Scope::Global);
    auto scope = static_cast<HN::Ipv6Scope>(IndexOf(kScopeNames, j, "scope", scopeFallback));
    return HN::Ipv6Network(a, prefix, type, scope);
}

Json Ipv6NetworkToJson(const HN::Ipv6Network& n) {
    return {{"address", n.GetAddress().GetStringAddress()},
            {"prefixLength", n.GetPrefixLength()},
            {"type", TypeName(n.GetIpv6AddressType())},
            {"scope", ScopeName(n.GetScope())}};
}

HN::IpConfig IpConfigFromJson(const Json& j) {
    HN::IpConfig c;
    c.SetUseDhcp(Flag(j, "dhcp"), Flag(j, "ipv4None"));
    if (!c.GetIpv4UseNone()) {
        c.SetIpv4Address(Ipv4(j, "ipv4Address"));
        c.SetIpv4Netmask(Ipv4(j, "ipv4Netmask"));
    }
    c.EnableIpv6(Flag(j, "ipv6Enabled"));
    c.SetUseIpv6Dhcp(Flag(j, "dhcpv6"));
    c.SetUseIpv6RouterAdvertised(Flag(j, "routerAdvertised"));
    c.SetDhcpDns(Flag(j, "dhcpDns"));
    std::vector<HN::Ipv6Network> v6;
    for (const auto& n : ZrkCtl::Sim::Entries(j, "ipv6Addresses")) {
        try {
            v6.push_back(Ipv6NetworkFromJson(n));
        } catch (const HostCtl::Lib::HostCtlException&) {
            // An address the host cannot read is not in effect.
        }
    }
    SetDistinctIpv6Networks(c, std::move(v6));
    return c;
}

Json IpConfigToJson(const HN::IpConfig& c) {
    Json addresses = Json::array();
    for (const auto& n : c.GetIpv6Networks()) addresses.push_back(Ipv6NetworkToJson(n));
    return {{"dhcp", c.GetUseDhcp()},
            {"ipv4None", c.GetIpv4UseNone()},
            {"ipv4Address", c.GetIpv4Address().GetStringAddress()},
            {"ipv4Netmask", c.GetIpv4Netmask().GetStringAddress()},
            {"ipv6Enabled", c.IsIpv6Enabled()},
            {"dhcpv6", c.GetUseIpv6Dhcp()},
            {"routerAdvertised", c.GetUseIpv6RouterAdvertised()},
            {"dhcpDns", c.GetDhcpDns()},
            {"ipv6Addresses", addresses}};
}

int ConnectedNics(const Json& net, const std::string& portGroup) {
    int count = 0;
    for (const auto& nic : List(net, "zrkNics")) {
        const Json& c = ZrkCtl::Sim::Object(nic, "connection");
        if (Text(c, "type") == "portGroup" && Text(c, "portGroup") == portGroup) ++count;
    }
    return count;
}

std::int64_t ActiveClients(const Json& net, const Json& portGroup) {
    std::int64_t vms = ZrkCtl::Sim::Integer<std::int64_t>(portGroup, "vmClients", 0);
    return ConnectedNics(net, Text(portGroup, "name")) + vms;
}

std::string UplinkOwner(const Json& net, const std::string& pnic) {
    std::string owner;
    for (const auto& s : List(net, "standardSwitches")) {
        auto uplinks = ZrkCtl::Sim::Texts(s, "uplinks");
        if (std::find(uplinks.begin(), uplinks.end(), pnic) != uplinks.end())
            owner = Text(s, "name");
    }
    for (const auto& q : List(net, "distributedSwitches"))
        if (ZrkCtl::Sim::Object(q, "uplinks").contains(pnic)) owner = Text(q, "name");
    return owner;
}

void ReleaseUplink(Json& net, const std::string& pnic, const std::string& keepSwitch) {
    for (auto& s : List(net, "standardSwitches")) {
        if (!s.is_object() || Text(s, "name") == keepSwitch) continue;
        if (s["uplinks"].is_array()) {
            auto uplinks = Strings(s["uplinks"]);
            std::erase(uplinks, pnic);
            s["uplinks"] = uplinks;
        }
        if (s.contains("teamingPolicy")) {
            auto p = PolicyFromJson(s["teamingPolicy"]);
            if (p.RemoveUplink(pnic)) s["teamingPolicy"] = PolicyToJson(p);
        }
        if (!s["portGroups"].is_array()) continue;
        for (auto& pg : s["portGroups"]) {
            if (!pg.is_object() || !pg.contains("teamingPolicy")) continue;
            auto p = PolicyFromJson(pg["teamingPolicy"]);
            if (p.RemoveUplink(pnic)) pg["teamingPolicy"] = PolicyToJson(p);
        }
    }
    for (auto& q : List(net, "distributedSwitches"))
        if (q.is_object() && Text(q, "name") != keepSwitch && q["uplinks"].is_object())
            q["uplinks"].erase(pnic);
}

Json CurrentOf(const Json& net, const Json& nic) {
    if (ZrkCtl::Sim::Member(nic, "current")) return ZrkCtl::Sim::Object(nic, "current");
    // Without asking a DHCP server only these parts of the network count.
    Json netPart = Json::object();
    for (const char* key : {"ipv6Enabled", "ipv6Router"})
        if (auto it = net.find(key); it != net.end()) netPart[key] = *it;
    Json nicCopy = nic;
    UpdateCurrent(netPart, nicCopy, false, false);
    return nicCopy["current"];
}

HN::Ipv6Network LinkLocalFor(const HN::MacAddress& mac) {
    return HN::Ipv6Network(WithInterfaceId(HN::Ipv6Address("fe80::"), mac), 64,
                           HN::Ipv6AddressType::LinkLayer, HN::Ipv6Scope::LinkLocal);
}

void UpdateCurrent(Json& net, Json& nic, bool askDhcp, bool release) {
    HN::IpConfig config = IpConfigFromJson(ZrkCtl::Sim::Object(nic, "config"));
    HN::IpConfig before = IpConfigFromJson(ZrkCtl::Sim::Object(nic, "current"));
    HN::IpConfig now = config;
    HN::MacAddress mac;
    if (HN::MacAddress::IsValidAddress(Text(nic, "mac"))) mac = HN::MacAddress(Text(nic, "mac"));

    // IPv4.
    if (config.GetUseDhcp()) {
        HN::Ipv4Address address, netmask;
        now.SetIpv4Address(release ? HN::Ipv4Address() : before.GetIpv4Address());
        now.SetIpv4Netmask(release ? HN::Ipv4Address() : before.GetIpv4Netmask());
        if (!before.GetUseDhcp()) {  // a static address is no lease
            now.SetIpv4Address(HN::Ipv4Address());
            now.SetIpv4Netmask(HN::Ipv4Address());
        }
        if (askDhcp && Ipv4Lease(net, address, netmask)) {
            now.SetIpv4Address(address);
            now.SetIpv4Netmask(netmask);
            const Json& server = ZrkCtl::Sim::Object(net, "dhcpServer");
            nic["leaseRenewals"] = ZrkCtl::Sim::Integer<std::int64_t>(nic, "leaseRenewals", 0) + 1;
            bool management = Text(net, "managementInterface") == Text(nic, "name");
            if (management && HN::Ipv4Address::IsValidAddress(Text(server, "ipv4Gateway")))
                net["routing"]["ipv4Gateway"] = Text(server, "ipv4Gateway");
            if (management && config.GetDhcpDns()) {
                Json& dns = net["dns"];
                if (server.contains("nameServers")) dns["nameServers"] = server["nameServers"];
                if (!Text(server, "hostname").empty()) dns["hostname"] = Text(server, "hostname");
                if (!Text(server, "domain").empty()) dns["domain"] = Text(server, "domain");
            }
        }
    }

    // IPv6: the link-local address, the static ones, and what the router and
    // the DHCPv6 server hand out.
    std::vector<HN::Ipv6Network> v6;
    if (Flag(net, "ipv6Enabled") && config.IsIpv6Enabled()) {
        v6.push_back(LinkLocalFor(mac));
        for (auto n : config.GetIpv6Networks()) {
            if (n.GetIpv6AddressType() != HN::Ipv6AddressType::Static) continue;
            v6.push_back(n);
        }
        const Json* router = ZrkCtl::Sim::Member(net, "ipv6Router");
        if (config.GetUseIpv6RouterAdvertised() && router && router->is_object() &&
            HN::Ipv6Network::IsValidAddressAndNetmask(Text(*router, "prefix"))) {
            HN::Ipv6Network prefix(Text(*router, "prefix"));
            v6.emplace_back(WithInterfaceId(prefix.GetAddress(), mac), prefix.GetPrefixLength(),
                            HN::Ipv6AddressType::Autoconf, HN::Ipv6Scope::Global);
        }
        if (config.GetUseIpv6Dhcp()) {
            const Json& server = ZrkCtl::Sim::Object(net, "dhcpv6Server");
            if (askDhcp && ZrkCtl::Sim::Member(net, "dhcpv6Server") &&
                Flag(server, "answers", true)) {
                for (const auto& text : ZrkCtl::Sim::Texts(server, "addresses")) {
                    if (!HN::Ipv6Network::IsValidAddressAndNetmask(text)) continue;
                    HN::Ipv6Network n(text);
                    n.SetIpv6AddressType(HN::Ipv6AddressType::Dhcp);
                    v6.push_back(n);
                }
            } else if (!release) {
                for (const auto& n : before.GetIpv6Networks())
                    if (n.GetIpv6AddressType() == HN::Ipv6AddressType::Dhcp) v6.push_back(n);
            }
        }
    }
    SetDistinctIpv6Networks(now, std::move(v6));
    nic["current"] = IpConfigToJson(now);
}

}  // namespace ZrkCtl::Network::Model
