// Routing and DNS of the network stack.
#include <algorithm>
#include <cctype>
#include <sstream>
#include <stdexcept>

#include "hostctl/exception.h"
#include "simhost/netmodel.h"
#include "simhost/network.h"
#include "simhost/state_values.h"
#include "store/replace_file.h"

namespace ZrkCtl::Network {

namespace M = Model;
using Json = Sim::Json;
using HostCtl::Lib::HostCtlException;

namespace {

void CheckNetStack(const std::string& netStack) {
    if (netStack != "defaultNetStack")
        throw HostCtlException("Unknown network stack '" + netStack + "'");
}

// The network part of the state, with the snapshot that holds it.
// The fault of the operation is looked for in the same snapshot.
struct NetSnapshot {
    NetSnapshot() : state(Sim::Snapshot()) {}
    explicit NetSnapshot(const char* operation) : state(Sim::SnapshotFor(operation)) {}
    std::shared_ptr<const Json> state;
    const Json& net = M::Net(*state);
};

Json& Dns(Json& state) {
    Json& dns = M::Net(state)["dns"];
    if (!dns.is_object()) dns = Json::object();
    return dns;
}

// Splits at blanks and commas; runs of separators count as one.
std::vector<std::string> SplitNames(const std::string& text) {
    std::vector<std::string> names;
    std::string current;
    for (char c : text) {
        if (std::isspace(static_cast<unsigned char>(c)) || c == ',') {
            if (!current.empty()) names.push_back(current);
            current.clear();
        } else {
            current += c;
        }
    }
    if (!current.empty()) names.push_back(current);
    return names;
}

bool IsValidHostLabel(const std::string& name) {
    if (name.empty() || name.size() > 63 || name.front() == '-' || name.back() == '-') return false;
    return std::all_of(name.begin(), name.end(),
                       [](unsigned char c) { return std::isalnum(c) || c == '-'; });
}

}  // namespace

// --- RoutingInfoImpl -------------------------------------------------------

RoutingInfoImpl::RoutingInfoImpl(std::string netStack) : netStack_(std::move(netStack)) {}

HostCtl::Network::Ipv4Address RoutingInfoImpl::GetZerkelDefaultGateway() const {
    Sim::CheckFault("routing.getZerkelDefaultGateway");
    CheckNetStack(netStack_);
    std::string gw = Sim::Text(Sim::Object(NetSnapshot().net, "routing"), "ipv4Gateway", "0.0.0.0");
    return HostCtl::Network::Ipv4Address::IsValidAddress(gw) ? HostCtl::Network::Ipv4Address(gw)
                                                             : HostCtl::Network::Ipv4Address();
}

void RoutingInfoImpl::SetZerkelDefaultGateway(const HostCtl::Network::Ipv4Address& gateway,
                                              bool checkReachable) const {
    Sim::CheckFault("routing.setZerkelDefaultGateway");
    CheckNetStack(netStack_);
    Sim::Update([&](Json& state) {
        Json& net = M::Net(state);
        if (checkReachable && !gateway.IsAnyAddress()) {
            std::string mgmt = Sim::Text(net, "managementInterface");
            const Json* nic = M::FindByName(M::List(net, "zrkNics"), mgmt);
            auto current = M::IpConfigFromJson(nic ? M::CurrentOf(net, *nic) : Json::object());
            std::uint32_t mask = current.GetIpv4Netmask().GetAddress();
            if (current.GetIpv4Address().IsAnyAddress() ||
                (current.GetIpv4Address().GetAddress() & mask) != (gateway.GetAddress() & mask))
                throw HostCtlException("Gateway " + gateway.GetStringAddress() +
                                       " is not reachable from the management interface");
        }
        net["routing"]["ipv4Gateway"] = gateway.GetStringAddress();
    });
}

HostCtl::Network::Ipv6Address RoutingInfoImpl::GetIpv6ZerkelDefaultGateway() const {
    Sim::CheckFault("routing.getIpv6ZerkelDefaultGateway");
    CheckNetStack(netStack_);
    std::string gw = Sim::Text(Sim::Object(NetSnapshot().net, "routing"), "ipv6Gateway", "::");
    return HostCtl::Network::Ipv6Address::IsValidAddress(gw) ? HostCtl::Network::Ipv6Address(gw)
                                                             : HostCtl::Network::Ipv6Address();
}

void RoutingInfoImpl::SetIpv6ZerkelDefaultGateway(
    const HostCtl::Network::Ipv6Address& gateway) const {
    Sim::CheckFault("routing.setIpv6ZerkelDefaultGateway");
    CheckNetStack(netStack_);
    Sim::Update([&](Json& state) {
        M::Net(state)["routing"]["ipv6Gateway"] = gateway.GetScopedStringAddress();
    });
}

// --- DnsConfigImpl -----------------------------------------------------------

DnsConfigImpl::DnsConfigImpl(std::string netStack) : netStack_(std::move(netStack)) {}

bool DnsConfigImpl::IsStale() const {
    if (!data_ || changed_) return true;
    try {
        return Sim::Object(NetSnapshot().net, "dns") != *data_;
    } catch (const HostCtlException&) {
        return true;
    }
}

void DnsConfigImpl::Refresh() {
    const NetSnapshot snapshot("dns.refresh");
    CheckNetStack(netStack_);
    data_ = Sim::Object(snapshot.net, "dns");
    changed_ = false;
}

const Json& DnsConfigImpl::Data() {
    if (!data_) Refresh();
    return *data_;
}

void DnsConfigImpl::Change(const std::string& fault, const std::function<void(Json& dns)>& change) {
    Sim::CheckFault(fault);
    CheckNetStack(netStack_);
    Sim::Update([&](Json& state) { change(Dns(state)); });
    changed_ = true;
}

std::string DnsConfigImpl::GetHostname() {
    Sim::CheckFault("dns.getHostname");
    return Sim::Text(Data(), "hostname");
}

std::string DnsConfigImpl::GetDomain() {
    Sim::CheckFault("dns.getDomain");
    return Sim::Text(Data(), "domain");
}

std::vector<HostCtl::Network::Ipv4Address> DnsConfigImpl::GetNameServers() {
    Sim::CheckFault("dns.getNameServers");
    std::vector<HostCtl::Network::Ipv4Address> out;
    for (const auto& s : Sim::Texts(Data(), "nameServers"))
        if (HostCtl::Network::Ipv4Address::IsValidAddress(s)) out.emplace_back(s);
    return out;
}

std::vector<HostCtl::Network::Ipv6Address> DnsConfigImpl::GetIpv6NameServers(
    bool includeLinkLocal) {
    Sim::CheckFault("dns.getIpv6NameServers");
    std::vector<HostCtl::Network::Ipv6Address> out;
    for (const auto& s : Sim::Texts(Data(), "ipv6NameServers")) {
        if (!HostCtl::Network::Ipv6Address::IsValidAddress(s)) continue;
        HostCtl::Network::Ipv6Address a(s);
        if (includeLinkLocal || !a.IsLinkLocal()) out.push_back(a);
    }
    return out;
}

std::vector<std::string> DnsConfigImpl::GetSearchDomains() {
    Sim::CheckFault("dns.getSearchDomains");
    return Sim::Texts(Data(), "searchDomains");
}

void DnsConfigImpl::SetHostname(const std::string& hostname, bool save) {
    if (!IsValidHostLabel(hostname)) throw HostCtlException("Invalid host name '" + hostname + "'");
    Change("dns.setHostname", [&](Json& dns) { dns["hostname"] = hostname; });
    if (save) SaveConfig();
}

void DnsConfigImpl::SetFqdn(const std::string& fqdn, bool save, const std::string& domain) {
    auto dot = fqdn.find('.');
    std::string host = fqdn.substr(0, dot);
    std::string newDomain = !domain.empty()            ? domain
                            : dot == std::string::npos ? std::string()
                                                       : fqdn.substr(dot + 1);
    if (!IsValidHostLabel(host)) throw HostCtlException("Invalid host name '" + fqdn + "'");
    std::stringstream labels(newDomain);
    for (std::string label; std::getline(labels, label, '.');)
        if (!IsValidHostLabel(label))
            throw HostCtlException("Invalid domain name '" + newDomain + "'");
    Change("dns.setFqdn", [&](Json& dns) {
        dns["hostname"] = host;
        dns["domain"] = newDomain;
    });
    if (save) SaveConfig();
}

void DnsConfigImpl::RemoveNameServers() {
    Change("dns.removeNameServers", [](Json& dns) {
        dns["nameServers"] = Json::array();
        dns["ipv6NameServers"] = Json::array();
    });
}

void DnsConfigImpl::AddUserNameServer(const HostCtl::Network::IpAddress& server) {
    Change("dns.addUserNameServer", [&](Json& dns) {
        const char* key = server.IsIpv4() ? "nameServers" : "ipv6NameServers";
        std::string text = server.IsIpv4()
                               ? server.GetStringAddress()
                               : static_cast<const HostCtl::Network::Ipv6Address&>(server)
                                     .GetScopedStringAddress();
        auto list = Sim::Texts(dns, key);
        if (std::find(list.begin(), list.end(), text) == list.end()) list.push_back(text);
        dns[key] = list;
    });
}

void DnsConfigImpl::SetSearchDomainsString(const std::string& text) {
    Change("dns.setSearchDomainsString",
           [&](Json& dns) { dns["searchDomains"] = SplitNames(text); });
}

void DnsConfigImpl::AddUserSearchDomain(const std::string& domain) {
    if (domain.empty()) throw HostCtlException("Empty search domain");
    Change("dns.addUserSearchDomain", [&](Json& dns) {
        auto list = Sim::Texts(dns, "searchDomains");
        if (std::find(list.begin(), list.end(), domain) == list.end()) list.push_back(domain);
        dns["searchDomains"] = list;
    });
}

void DnsConfigImpl::SaveConfig() {
    Change("dns.saveConfig", [](Json& dns) {
        Json saved = dns;
        saved.erase("saved");
        dns["saved"] = saved;
    });
}

}  // namespace ZrkCtl::Network
