// The simulated host's side of the network repairs: the kind of a distributed
// switch, its ports' settings, host-local ports, and Zerkel NICs moved onto a
// distributed-switch port. Ports without settings of their own have the
// defaults (no VLAN, unblocked, every uplink active).
#include <algorithm>
#include <cstdint>
#include <set>

#include "hostctl/exception.h"
#include "simhost/netmodel.h"
#include "simhost/network.h"
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

const Json& QdsEntry(const Json& state, const std::string& name) {
    return M::Require(M::Net(state), "distributedSwitches", name, "Distributed switch");
}

bool OwnKind(const Json& q) {
    const std::string kind = Text(q, "kind", "own");
    if (kind != "own" && kind != "foreign")
        throw HostCtlException("Distributed switch " + Text(q, "name") + " has unknown kind '" +
                               kind + "'");
    return kind == "own";
}

std::vector<std::string> UplinkPorts(const Json& q) {
    std::vector<std::string> ports;
    const Json& uplinks = Object(q, "uplinks");
    for (const auto& [pnic, port] : uplinks.items()) ports.push_back(Text(uplinks, pnic));
    return ports;
}

bool HasPort(const Json& q, const std::string& portId) {
    const auto ids = Sim::Texts(q, "ports");
    return std::find(ids.begin(), ids.end(), portId) != ids.end();
}

Json SettingsToJson(const HostCtl::Network::QdsPortSettings& s) {
    Json properties = Json::object();
    for (const auto& [key, value] : s.properties) properties[key] = value;
    return {{"vlanId", s.vlanId},
            {"blocked", s.blocked},
            {"activeUplinks", s.activeUplinks},
            {"standbyUplinks", s.standbyUplinks},
            {"properties", properties}};
}

}  // namespace

bool QdsSwitchImpl::IsOwnKind() const {
    const auto state = Sim::SnapshotFor("qds.isOwnKind");
    return OwnKind(QdsEntry(*state, name_));
}

HostCtl::Network::QdsPortSettings QdsSwitchImpl::GetPortSettings(const std::string& portId) const {
    const auto state = Sim::SnapshotFor("qds.getPortSettings");
    const Json& q = QdsEntry(*state, name_);
    if (!HasPort(q, portId))
        throw HostCtlException("Port " + portId + " not found on distributed switch " + name_);
    HostCtl::Network::QdsPortSettings s;
    const Json* own = Sim::Member(Object(q, "portSettings"), portId);
    if (!own) {
        s.activeUplinks = UplinkPorts(q);
        return s;
    }
    s.vlanId = Integer<std::uint16_t>(*own, "vlanId", 0);
    s.blocked = Flag(*own, "blocked");
    s.activeUplinks = Sim::Texts(*own, "activeUplinks");
    s.standbyUplinks = Sim::Texts(*own, "standbyUplinks");
    const Json& properties = Object(*own, "properties");
    for (const auto& [key, value] : properties.items()) s.properties[key] = Text(properties, key);
    return s;
}

std::string QdsSwitchImpl::AddHostLocalPort(const HostCtl::Network::QdsPortSettings& s) const {
    Sim::CheckFault("qds.addHostLocalPort");
    if (s.vlanId > 4094) throw HostCtlException("Invalid VLAN ID " + std::to_string(s.vlanId));
    std::string id;
    Sim::Update([&](Json& state) {
        Json& q = M::Require(M::Net(state), "distributedSwitches", name_, "Distributed switch");
        if (!OwnKind(q))
            throw HostCtlException("Distributed switch " + name_ +
                                   " does not allow host-local ports");
        const auto uplinks = UplinkPorts(q);
        for (const auto* list : {&s.activeUplinks, &s.standbyUplinks})
            for (const auto& u : *list)
                if (std::find(uplinks.begin(), uplinks.end(), u) == uplinks.end())
                    throw HostCtlException("Uplink " + u + " is not an uplink of " + name_);
        const auto ids = Sim::Texts(q, "ports");
        const std::set<std::string> taken(ids.begin(), ids.end());
        for (int n = 0;; ++n) {
            id = HostCtl::Network::kHostLocalPortPrefix + std::to_string(n);
            if (!taken.count(id)) break;
        }
        if (static_cast<std::int64_t>(ids.size()) >=
            Integer<std::int64_t>(q, "numPorts", INT64_MAX))
            throw HostCtlException("Distributed switch " + name_ + " has no free port");
        q["ports"].push_back(id);
        if (!q["portSettings"].is_object()) q["portSettings"] = Json::object();
        q["portSettings"][id] = SettingsToJson(s);
    });
    return id;
}

void ZrkNicImpl::ConnectToQdsPort(const std::string& switchName, const std::string& portId) {
    Change("zrkNic.connectToQdsPort", [&](Json& nic, Json& net) {
        const Json* q = M::FindByName(M::List(net, "distributedSwitches"), switchName);
        if (!q) throw HostCtlException("Distributed switch " + switchName + " not found");
        if (!HasPort(*q, portId))
            throw HostCtlException("Port " + portId + " not found on distributed switch " +
                                   switchName);
        nic["connection"] = {{"type", "qdsPort"}, {"switch", switchName}, {"port", portId}};
    });
}

}  // namespace ZrkCtl::Network
