// The simulated host's physical and Zerkel NICs, switches, port groups and
// the network-wide settings, over the state's "/network".
#include "simhost/network.h"

#include <algorithm>

#include "hostctl/exception.h"
#include "simhost/netmodel.h"
#include "simhost/state_values.h"

namespace ZrkCtl::Network {

namespace M = Model;
using Json = Sim::Json;
using HostCtl::Lib::HostCtlException;
using Sim::Flag;
using Sim::Integer;
using Sim::Object;
using Sim::Text;

namespace {

// The network part of the state, with the snapshot that holds it.
// The fault of the operation is looked for in the same snapshot.
struct NetSnapshot {
    NetSnapshot() : state(Sim::Snapshot()) {}
    explicit NetSnapshot(const char* operation) : state(Sim::SnapshotFor(operation)) {}
    std::shared_ptr<const Json> state;
    const Json& net = M::Net(*state);
};

// What a Zerkel NIC object copies from the host: its entry, the default
// gateways and whether it can be used.
Json NicView(const Json& net, const std::string& name) {
    const Json* nic = M::FindByName(M::List(net, "zrkNics"), name);
    if (!nic) return Json();
    bool usable = Flag(*nic, "enabled", true) && Flag(*nic, "up", true);
    const Json& c = Object(*nic, "connection");
    std::string type = Text(c, "type");
    if (type == "portGroup") {
        usable = usable && M::FindPortGroup(net, Text(c, "portGroup")).second != nullptr;
    } else if (type == "qdsPort") {
        const Json* q = M::FindByName(M::List(net, "distributedSwitches"), Text(c, "switch"));
        usable = usable && q != nullptr;
    } else {
        usable = false;
    }
    Json copy = *nic;
    copy["current"] = M::CurrentOf(net, *nic);
    return {{"nic", copy}, {"routing", Object(net, "routing")}, {"usable", usable}};
}

Json PnicView(const Json& net, const std::string& name) {
    const Json* pnic = M::FindByName(M::List(net, "pnics"), name);
    return pnic ? *pnic : Json();
}

HostCtl::Network::ConnectionPoint ConnectionFromJson(const Json& net, const Json& c) {
    std::string type = Text(c, "type");
    if (type == "portGroup") {
        std::string pg = Text(c, "portGroup");
        auto [vswitch, group] = M::FindPortGroup(net, pg);
        return HostCtl::Network::ConnectionPoint::ToPortGroup(
            pg, vswitch ? Text(*vswitch, "name") : "", PortGroupOperations());
    }
    if (type == "qdsPort")
        return HostCtl::Network::ConnectionPoint::ToQdsPort(Text(c, "switch"), Text(c, "port"));
    return {};
}

void CheckSwitchName(const Json& net, const std::string& name) {
    if (name.empty() || name.size() > 31)
        throw HostCtlException("Invalid virtual switch name '" + name + "'");
    if (M::FindByName(M::List(net, "standardSwitches"), name) ||
        M::FindByName(M::List(net, "distributedSwitches"), name))
        throw HostCtlException("A virtual switch named " + name + " already exists");
}

Json NewPortGroup(const std::string& name, std::uint16_t vlanId) {
    return {{"name", name}, {"vlanId", vlanId}, {"vmClients", 0}};
}

}  // namespace

// --- PnicImpl ------------------------------------------------------------

bool PnicImpl::IsStale() const {
    if (!data_) return true;
    try {
        return PnicView(NetSnapshot().net, name_) != *data_;
    } catch (const HostCtlException&) {
        return true;
    }
}

void PnicImpl::Refresh() {
    Json view = PnicView(NetSnapshot("pnic.refresh").net, name_);
    if (view.is_null()) throw HostCtlException("Physical NIC " + name_ + " not found");
    data_ = std::move(view);
}

const Json& PnicImpl::Data() {
    if (!data_) Refresh();
    return *data_;
}

std::optional<HostCtl::Network::PciDevice> PnicImpl::GetPciDevice() {
    Sim::CheckFault("pnic.getPciDevice");
    if (!Sim::Member(Data(), "pci")) return std::nullopt;
    const Json& pci = Object(Data(), "pci");
    return HostCtl::Network::PciDevice{Text(pci, "address"), Text(pci, "vendor"),
                                       Text(pci, "device")};
}

HostCtl::Network::MacAddress PnicImpl::GetMacAddress() {
    Sim::CheckFault("pnic.getMacAddress");
    return HostCtl::Network::MacAddress(Text(Data(), "mac"));
}

bool PnicImpl::IsLinkUp() {
    Sim::CheckFault("pnic.isLinkUp");
    return Flag(Data(), "linkUp");
}

// --- ZrkNicImpl ----------------------------------------------------------

bool ZrkNicImpl::IsStale() const {
    if (!data_ || changed_) return true;
    try {
        return NicView(NetSnapshot().net, name_) != *data_;
    } catch (const HostCtlException&) {
        return true;
    }
}

void ZrkNicImpl::Refresh() {
    Json view = NicView(NetSnapshot("zrkNic.refresh").net, name_);
    if (view.is_null()) throw HostCtlException("Zerkel NIC " + name_ + " not found");
    data_ = std::move(view);
    changed_ = false;
}

const Json& ZrkNicImpl::Data() {
    if (!data_) Refresh();
    return *data_;
}

void ZrkNicImpl::Change(const std::string& fault,
                        const std::function<void(Json& nic, Json& net)>& change) {
    Sim::CheckFault(fault);
    Sim::Update([&](Json& state) {
        Json& net = M::Net(state);
        change(M::Require(net, "zrkNics", name_, "Zerkel NIC"), net);
    });
    changed_ = true;
}

HostCtl::Network::MacAddress ZrkNicImpl::GetMacAddress() {
    Sim::CheckFault("zrkNic.getMacAddress");
    return HostCtl::Network::MacAddress(Text(Object(Data(), "nic"), "mac", "00:00:00:00:00:00"));
}

void ZrkNicImpl::SetMacAddressFromPnic(HostCtl::Network::Pnic& pnic) {
    if (pnic.IsStale()) pnic.Refresh();
    std::string mac = pnic.GetMacAddress().GetStringAddress();
    Change("zrkNic.setMacAddressFromPnic", [&](Json& nic, Json& net) {
        nic["mac"] = mac;
        M::UpdateCurrent(net, nic, false, false);  // the link-local address follows the MAC
    });
}

HostCtl::Network::IpConfig ZrkNicImpl::GetIpConfig() {
    Sim::CheckFault("zrkNic.getIpConfig");
    const Json& view = Data();
    auto config = M::IpConfigFromJson(Object(Object(view, "nic"), "current"));
    const Json& routing = Object(view, "routing");
    std::string gw = Text(routing, "ipv4Gateway");
    if (HostCtl::Network::Ipv4Address::IsValidAddress(gw))
        config.SetIpv4Gateway(HostCtl::Network::Ipv4Address(gw));
    std::string gw6 = Text(routing, "ipv6Gateway");
    if (HostCtl::Network::Ipv6Address::IsValidAddress(gw6))
        config.SetIpv6Gateway(HostCtl::Network::Ipv6Address(gw6));
    return config;
}

HostCtl::Network::IpConfig ZrkNicImpl::GetConfiguredIpConfig() {
    Sim::CheckFault("zrkNic.getConfiguredIpConfig");
    return M::IpConfigFromJson(Object(Object(Data(), "nic"), "config"));
}

void ZrkNicImpl::SetIpConfig(const HostCtl::Network::IpConfig& config) {
    HostCtl::Network::IpConfig stored = config;
    if (!stored.GetUseDhcp() && !stored.GetIpv4UseNone()) {
        if (!stored.GetIpv4Netmask().IsValidNetmask())
            throw HostCtlException("Invalid netmask " + stored.GetIpv4Netmask().GetStringAddress());
    }
    // Only what is configured by hand is kept; the rest is learnt again.
    std::vector<HostCtl::Network::Ipv6Network> statics;
    for (const auto& n : config.GetIpv6Networks())
        if (n.GetIpv6AddressType() == HostCtl::Network::Ipv6AddressType::Static &&
            !n.GetAddress().IsLinkLocal())
            statics.push_back(n);
    stored.SetIpv6Networks(statics);
    Change("zrkNic.setIpConfig", [&](Json& nic, Json& net) {
        nic["config"] = M::IpConfigToJson(stored);
        M::UpdateCurrent(net, nic, stored.GetUseDhcp() || stored.GetUseIpv6Dhcp(), false);
    });
}

HostCtl::Network::ConnectionPoint ZrkNicImpl::GetPortConnection() {
    const NetSnapshot snapshot("zrkNic.getPortConnection");
    const Json& net = snapshot.net;
    return ConnectionFromJson(net, Object(Object(Data(), "nic"), "connection"));
}

void ZrkNicImpl::ConnectToPortGroup(const std::string& portGroup) {
    Change("zrkNic.connectToPortGroup", [&](Json& nic, Json& net) {
        if (!M::FindPortGroup(net, portGroup).second)
            throw HostCtlException("Port group " + portGroup + " not found");
        nic["connection"] = {{"type", "portGroup"}, {"portGroup", portGroup}};
    });
}

void ZrkNicImpl::Enable() {
    Change("zrkNic.enable", [](Json& nic, Json& net) {
        nic["enabled"] = true;
        nic["up"] = true;
        M::UpdateCurrent(net, nic, true, false);
    });
}

void ZrkNicImpl::Disable() {
    Change("zrkNic.disable", [](Json& nic, Json&) {
        nic["enabled"] = false;
        nic["up"] = false;
    });
}

bool ZrkNicImpl::IsUsable() {
    Sim::CheckFault("zrkNic.isUsable");
    return Flag(Data(), "usable");
}

void ZrkNicImpl::InterfaceDown() {
    Change("zrkNic.interfaceDown", [](Json& nic, Json&) { nic["up"] = false; });
}

void ZrkNicImpl::InterfaceUp() {
    Change("zrkNic.interfaceUp", [](Json& nic, Json& net) {
        if (!Flag(nic, "enabled", true))
            throw HostCtlException("Zerkel NIC " + Text(nic, "name") + " is disabled");
        nic["up"] = true;
        M::UpdateCurrent(net, nic, true, false);
    });
}

void ZrkNicImpl::RenewDhcp() {
    Change("zrkNic.renewDhcp", [](Json& nic, Json& net) {
        if (!Flag(Object(nic, "config"), "dhcp"))
            throw HostCtlException("DHCP is not enabled on " + Text(nic, "name"));
        M::UpdateCurrent(net, nic, true, false);
    });
}

void ZrkNicImpl::RenewDhcpv6() {
    Change("zrkNic.renewDhcpv6", [](Json& nic, Json& net) {
        if (!Flag(Object(nic, "config"), "dhcpv6"))
            throw HostCtlException("DHCPv6 is not enabled on " + Text(nic, "name"));
        M::UpdateCurrent(net, nic, true, false);
    });
}

void ZrkNicImpl::RequestRenewal(bool release) {
    Change("zrkNic.requestRenewal",
           [&](Json& nic, Json& net) { M::UpdateCurrent(net, nic, true, release); });
}

// --- PortsetImpl, PortGroupImpl, QdsSwitchImpl -------------------------------

bool PortsetImpl::IsValidVirtualSwitch() const {
    const NetSnapshot snapshot("vswitch.isValidVirtualSwitch");
    const Json& net = snapshot.net;
    return M::FindByName(M::List(net, "standardSwitches"), name_) ||
           M::FindByName(M::List(net, "distributedSwitches"), name_);
}

std::vector<std::string> PortsetImpl::GetUplinks() const {
    const NetSnapshot snapshot("vswitch.getUplinks");
    const Json& net = snapshot.net;
    return Sim::Texts(M::Require(net, "standardSwitches", name_, "Virtual switch"), "uplinks");
}

std::vector<std::string> PortsetImpl::GetPortGroups() const {
    const NetSnapshot snapshot("vswitch.getPortGroups");
    const Json& net = snapshot.net;
    std::vector<std::string> names;
    for (const auto& pg :
         M::List(M::Require(net, "standardSwitches", name_, "Virtual switch"), "portGroups"))
        names.push_back(Text(pg, "name"));
    return names;
}

std::int64_t PortsetImpl::GetNumPorts() const {
    const NetSnapshot snapshot("vswitch.getNumPorts");
    const Json& net = snapshot.net;
    return Integer<std::int64_t>(M::Require(net, "standardSwitches", name_, "Virtual switch"),
                                 "numPorts", HN::Portset::DEF_NUM_PORTS);
}

std::int64_t PortsetImpl::GetUsedPorts() const {
    const NetSnapshot snapshot("vswitch.getUsedPorts");
    const Json& net = snapshot.net;
    const Json& s = M::Require(net, "standardSwitches", name_, "Virtual switch");
    std::int64_t used = static_cast<std::int64_t>(Sim::Texts(s, "uplinks").size());
    for (const auto& pg : M::List(s, "portGroups")) used += M::ActiveClients(net, pg);
    return used;
}

std::int64_t PortsetImpl::GetConfiguredPorts() const {
    const NetSnapshot snapshot("vswitch.getConfiguredPorts");
    const Json& net = snapshot.net;
    const Json& s = M::Require(net, "standardSwitches", name_, "Virtual switch");
    return Integer<std::int64_t>(s, "configuredPorts",
                                 Integer<std::int64_t>(s, "numPorts", HN::Portset::DEF_NUM_PORTS));
}

HostCtl::Network::NicTeamingPolicy PortsetImpl::GetTeamingPolicy() const {
    const NetSnapshot snapshot("vswitch.getTeamingPolicy");
    const Json& net = snapshot.net;
    return M::PolicyFromJson(
        Object(M::Require(net, "standardSwitches", name_, "Virtual switch"), "teamingPolicy"));
}

void PortsetImpl::SetTeamingPolicy(const HostCtl::Network::NicTeamingPolicy& policy) const {
    Sim::CheckFault("vswitch.setTeamingPolicy");
    Sim::Update([&](Json& state) {
        Json& s = M::Require(M::Net(state), "standardSwitches", name_, "Virtual switch");
        auto uplinks = Sim::Texts(s, "uplinks");
        for (const auto* list : {&policy.GetActiveUplinks(), &policy.GetStandbyUplinks()})
            for (const auto& u : *list)
                if (std::find(uplinks.begin(), uplinks.end(), u) == uplinks.end())
                    throw HostCtlException("Uplink " + u + " is not an uplink of " + name_);
        s["teamingPolicy"] = M::PolicyToJson(policy);
    });
}

void PortsetImpl::AddUplink(const std::string& pnic) const {
    Sim::CheckFault("vswitch.addUplink");
    Sim::Update([&](Json& state) {
        Json& net = M::Net(state);
        M::Require(net, "pnics", pnic, "Physical NIC");
        Json& s = M::Require(net, "standardSwitches", name_, "Virtual switch");
        std::string owner = M::UplinkOwner(net, pnic);
        if (owner == name_)
            throw HostCtlException("Uplink " + pnic + " is already used by " + name_);
        if (!owner.empty())
            throw HostCtlException("Uplink " + pnic + " is already used by " + owner);
        auto uplinks = Sim::Texts(s, "uplinks");
        uplinks.push_back(pnic);
        s["uplinks"] = uplinks;
    });
}

void PortsetImpl::RemoveUplink(const std::string& pnic) const {
    Sim::CheckFault("vswitch.removeUplink");
    Sim::Update([&](Json& state) {
        Json& net = M::Net(state);
        Json& s = M::Require(net, "standardSwitches", name_, "Virtual switch");
        auto uplinks = Sim::Texts(s, "uplinks");
        if (std::erase(uplinks, pnic) == 0 &&
            !M::PolicyFromJson(Object(s, "teamingPolicy")).HasUplink(pnic))
            return;
        s["uplinks"] = uplinks;
        auto policy = M::PolicyFromJson(Object(s, "teamingPolicy"));
        if (policy.RemoveUplink(pnic)) s["teamingPolicy"] = M::PolicyToJson(policy);
        for (auto& pg : s["portGroups"]) {
            if (!pg.is_object() || !pg.contains("teamingPolicy")) continue;
            auto p = M::PolicyFromJson(pg["teamingPolicy"]);
            if (p.RemoveUplink(pnic)) pg["teamingPolicy"] = M::PolicyToJson(p);
        }
    });
}

HostCtl::Network::PortGroup PortsetImpl::AddPortGroup(const std::string& name,
                                                      std::uint16_t vlanId) const {
    Sim::CheckFault("vswitch.addPortGroup");
    if (name.empty() || name.size() > 59)
        throw HostCtlException("Invalid port group name '" + name + "'");
    if (vlanId > 4095) throw HostCtlException("Invalid VLAN ID " + std::to_string(vlanId));
    Sim::Update([&](Json& state) {
        Json& net = M::Net(state);
        Json& s = M::Require(net, "standardSwitches", name_, "Virtual switch");
        if (M::FindPortGroup(net, name).second)
            throw HostCtlException("A port group named " + name + " already exists");
        M::List(s, "portGroups").push_back(NewPortGroup(name, vlanId));
    });
    return HostCtl::Network::PortGroup(name, name_, PortGroupOperations());
}

bool PortGroupImpl::IsValidPortGroup() const {
    return M::FindPortGroup(NetSnapshot("portGroup.isValidPortGroup").net, name_).second != nullptr;
}

std::map<std::string, std::string> QdsSwitchImpl::GetUplinkMap() const {
    const NetSnapshot snapshot("qds.getUplinkMap");
    const Json& net = snapshot.net;
    std::map<std::string, std::string> map;
    const Json& uplinks =
        Object(M::Require(net, "distributedSwitches", name_, "Distributed switch"), "uplinks");
    for (const auto& [pnic, port] : uplinks.items()) map[pnic] = Text(uplinks, pnic);
    return map;
}

void QdsSwitchImpl::RemoveUplink(const std::string& pnic) const {
    Sim::CheckFault("qds.removeUplink");
    Sim::Update([&](Json& state) {
        Json& q = M::Require(M::Net(state), "distributedSwitches", name_, "Distributed switch");
        if (q["uplinks"].is_object()) q["uplinks"].erase(pnic);
    });
}

// --- Info objects ----------------------------------------------------------

std::vector<std::unique_ptr<HN::Portset>> VirtualSwitchInfoImpl::GetVirtualSwitches(
    HN::PortsetKind kind) const {
    const NetSnapshot snapshot("vswitchInfo.getVirtualSwitches");
    const Json& net = snapshot.net;
    std::vector<std::unique_ptr<HN::Portset>> out;
    if (kind == HN::PortsetKind::Qds) return out;
    for (const auto& s : M::List(net, "standardSwitches"))
        out.push_back(std::make_unique<PortsetImpl>(Text(s, "name")));
    return out;
}

std::vector<std::unique_ptr<HN::QdsSwitch>> VirtualSwitchInfoImpl::GetQdsSwitches() const {
    const NetSnapshot snapshot("vswitchInfo.getQdsSwitches");
    const Json& net = snapshot.net;
    std::vector<std::unique_ptr<HN::QdsSwitch>> out;
    for (const auto& q : M::List(net, "distributedSwitches"))
        out.push_back(std::make_unique<QdsSwitchImpl>(Text(q, "name")));
    return out;
}

std::unique_ptr<HN::Portset> VirtualSwitchInfoImpl::AddVirtualSwitch(const std::string& name,
                                                                     std::int64_t numPorts) const {
    Sim::CheckFault("vswitchInfo.addVirtualSwitch");
    if (numPorts < 1 || numPorts > 4096)
        throw HostCtlException("Invalid number of ports " + std::to_string(numPorts));
    Sim::Update([&](Json& state) {
        Json& net = M::Net(state);
        CheckSwitchName(net, name);
        M::List(net, "standardSwitches")
            .push_back({{"name", name},
                        {"numPorts", numPorts},
                        {"configuredPorts", numPorts},
                        {"uplinks", Json::array()},
                        {"teamingPolicy", M::PolicyToJson({})},
                        {"portGroups", Json::array()}});
    });
    return std::make_unique<PortsetImpl>(name);
}

std::vector<std::unique_ptr<HN::ZrkNic>> ZerkelNicInfoImpl::GetZerkelNics(
    HN::PortsetKind kind) const {
    const NetSnapshot snapshot("zrkNicInfo.getZerkelNics");
    const Json& net = snapshot.net;
    std::vector<std::unique_ptr<HN::ZrkNic>> out;
    for (const auto& nic : M::List(net, "zrkNics")) {
        auto type = ConnectionFromJson(net, Object(nic, "connection")).GetType();
        if (kind == HN::PortsetKind::Standard && type != HN::ConnectionType::PortGroup) continue;
        if (kind == HN::PortsetKind::Qds && type != HN::ConnectionType::QdsPort) continue;
        out.push_back(std::make_unique<ZrkNicImpl>(Text(nic, "name")));
    }
    return out;
}

bool NetworkInfoImpl::IsZrkIpv6Enabled() const {
    return Flag(NetSnapshot("network.isZrkIpv6Enabled").net, "ipv6Enabled");
}

void NetworkInfoImpl::SetZrkIpv6Enabled(bool enabled) const {
    Sim::CheckFault("network.setZrkIpv6Enabled");
    Sim::Update([&](Json& state) { M::Net(state)["ipv6EnabledAfterReboot"] = enabled; });
}

std::vector<std::unique_ptr<HN::Pnic>> NetworkInfoImpl::GetPnics(HN::PnicKind kind) const {
    const NetSnapshot snapshot("network.getPnics");
    const Json& net = snapshot.net;
    std::vector<std::unique_ptr<HN::Pnic>> out;
    for (const auto& p : M::List(net, "pnics")) {
        std::string name = Text(p, "name");
        if (kind == HN::PnicKind::Connected && !Flag(p, "linkUp")) continue;
        if (kind == HN::PnicKind::Unused && !M::UplinkOwner(net, name).empty()) continue;
        out.push_back(std::make_unique<PnicImpl>(name));
    }
    return out;
}

std::vector<HN::PortGroup> NetworkInfoImpl::GetAllPortGroups(HN::PortsetKind kind) const {
    const NetSnapshot snapshot("network.getAllPortGroups");
    const Json& net = snapshot.net;
    std::vector<HN::PortGroup> out;
    if (kind == HN::PortsetKind::Qds) return out;
    for (const auto& s : M::List(net, "standardSwitches"))
        for (const auto& pg : M::List(s, "portGroups"))
            out.emplace_back(Text(pg, "name"), Text(s, "name"), PortGroupOperations());
    return out;
}

void NetworkInfoImpl::UpdateManagementInterface() {
    const NetSnapshot snapshot("network.updateManagementInterface");
    const Json& net = snapshot.net;
    std::string name = Text(net, "managementInterface");
    updated_ = true;
    management_.reset();
    if (!name.empty() && M::FindByName(M::List(net, "zrkNics"), name)) management_ = name;
}

std::unique_ptr<HN::ZrkNic> NetworkInfoImpl::GetManagementInterface() {
    Sim::CheckFault("network.getManagementInterface");
    if (!updated_) UpdateManagementInterface();
    if (!management_) return nullptr;
    return std::make_unique<ZrkNicImpl>(*management_);
}

void NetworkInfoImpl::ClearNetworkConfig() const {
    Sim::CheckFault("network.clearNetworkConfig");
    Sim::Update([](Json& state) {
        Json& net = M::Net(state);
        net["standardSwitches"] = Json::array();
        net["distributedSwitches"] = Json::array();
        net["zrkNics"] = Json::array();
        net["managementInterface"] = nullptr;
        net["routing"] = {{"ipv4Gateway", "0.0.0.0"}, {"ipv6Gateway", "::"}};
        Json& dns = net["dns"];
        dns["hostname"] = "localhost";
        dns["nameServers"] = Json::array();
        dns["ipv6NameServers"] = Json::array();
        dns["searchDomains"] = Json::array();
    });
}

void NetworkInfoImpl::AutoConfigNetwork() const {
    Sim::CheckFault("network.autoConfigNetwork");
    Sim::Update([](Json& state) {
        Json& net = M::Net(state);
        if (!M::List(net, "standardSwitches").empty() || !M::List(net, "zrkNics").empty())
            throw HostCtlException("Network is already configured; clear it first");
        const Json& pnics = M::List(net, "pnics");
        if (pnics.empty()) throw HostCtlException("No physical NIC to configure the network with");
        const Json* uplink = &pnics[0];
        for (const auto& p : pnics)
            if (Flag(p, "linkUp")) {
                uplink = &p;
                break;
            }
        std::string pnic = Text(*uplink, "name");
        HN::NicTeamingPolicy policy;
        policy.AddActiveUplink(pnic);
        Json vswitch = {{"name", "zSwitch0"},
                        {"numPorts", HN::Portset::DEF_NUM_PORTS},
                        {"configuredPorts", HN::Portset::DEF_NUM_PORTS},
                        {"uplinks", Json::array({pnic})},
                        {"teamingPolicy", M::PolicyToJson(policy)},
                        {"portGroups", Json::array({NewPortGroup("Management Network", 0),
                                                    NewPortGroup("VM Network", 0)})}};
        net["standardSwitches"].push_back(vswitch);
        HN::IpConfig config;
        config.SetUseDhcp(true);
        config.SetDhcpDns(true);
        config.EnableIpv6(true);
        config.SetUseIpv6RouterAdvertised(true);
        Json nic = {{"name", "zrk0"},
                    {"mac", Text(*uplink, "mac", "00:00:00:00:00:00")},
                    {"enabled", true},
                    {"up", true},
                    {"connection", {{"type", "portGroup"}, {"portGroup", "Management Network"}}},
                    {"config", M::IpConfigToJson(config)}};
        net["managementInterface"] = "zrk0";
        M::UpdateCurrent(net, nic, true, true);
        net["zrkNics"].push_back(nic);
    });
}

void NetworkInfoImpl::DisableNetDumper() const {
    Sim::CheckFault("network.disableNetDumper");
    Sim::Update([](Json& state) { M::Net(state)["netDumper"] = {{"enabled", false}}; });
}

}  // namespace ZrkCtl::Network
