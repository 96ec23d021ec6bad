// The port-group operations of the simulated host, shared by every PortGroup
// handle it hands out.
#include <algorithm>

#include "hostctl/exception.h"
#include "simhost/netmodel.h"
#include "simhost/network.h"
#include "simhost/state_values.h"

namespace ZrkCtl::Network {
namespace {

namespace M = Model;
using Json = Sim::Json;
using HostCtl::Lib::HostCtlException;

// The standard switch and port group the handle names; throws when either is
// gone.
std::pair<Json*, Json*> RequireGroup(Json& net, const HN::PortGroup& group) {
    Json& vswitch =
        M::Require(net, "standardSwitches", group.GetVirtualSwitchName(), "Virtual switch");
    Json* pg = M::FindByName(vswitch["portGroups"], group.GetName());
    if (!pg)
        throw HostCtlException("Port group " + group.GetName() + " not found on " +
                               group.GetVirtualSwitchName());
    return {&vswitch, pg};
}

std::pair<const Json*, const Json*> RequireGroup(const Json& net, const HN::PortGroup& group) {
    const Json& vswitch =
        M::Require(net, "standardSwitches", group.GetVirtualSwitchName(), "Virtual switch");
    const Json* pg = M::FindByName(M::List(vswitch, "portGroups"), group.GetName());
    if (!pg)
        throw HostCtlException("Port group " + group.GetName() + " not found on " +
                               group.GetVirtualSwitchName());
    return {&vswitch, pg};
}

class PortGroupOpsImpl : public HN::PortGroupOps {
public:
    std::uint16_t GetVlanId(const HN::PortGroup& group) const override {
        auto state = Sim::SnapshotFor("portGroup.getVlanId");
        auto [vswitch, pg] = RequireGroup(M::Net(*state), group);
        return Sim::Integer<std::uint16_t>(*pg, "vlanId", 0);
    }

    void SetVlanId(const HN::PortGroup& group, std::uint16_t vlanId) const override {
        Sim::CheckFault("portGroup.setVlanId");
        if (vlanId > 4095) throw HostCtlException("Invalid VLAN ID " + std::to_string(vlanId));
        Sim::Update([&](Json& state) {
            auto [vswitch, pg] = RequireGroup(M::Net(state), group);
            (*pg)["vlanId"] = vlanId;
        });
    }

    std::int64_t GetActiveClients(const HN::PortGroup& group) const override {
        auto state = Sim::SnapshotFor("portGroup.getActiveClients");
        const Json& net = M::Net(*state);
        auto [vswitch, pg] = RequireGroup(net, group);
        return M::ActiveClients(net, *pg);
    }

    HN::NicTeamingPolicy GetTeamingPolicy(const HN::PortGroup& group) const override {
        auto state = Sim::SnapshotFor("portGroup.getTeamingPolicy");
        auto [vswitch, pg] = RequireGroup(M::Net(*state), group);
        return M::EffectivePolicy(*vswitch, *pg);
    }

    void SetTeamingPolicy(const HN::PortGroup& group,
                          const HN::NicTeamingPolicy& policy) const override {
        Sim::CheckFault("portGroup.setTeamingPolicy");
        Sim::Update([&](Json& state) {
            auto [vswitch, pg] = RequireGroup(M::Net(state), group);
            (*pg)["teamingPolicy"] = M::PolicyToJson(policy);
        });
    }

    void AddUplink(const HN::PortGroup& group, const std::string& pnic) const override {
        Sim::CheckFault("portGroup.addUplink");
        Sim::Update([&](Json& state) {
            Json& net = M::Net(state);
            M::Require(net, "pnics", pnic, "Physical NIC");
            auto [vswitch, pg] = RequireGroup(net, group);
            M::ReleaseUplink(net, pnic, group.GetVirtualSwitchName());
            auto uplinks = M::Strings((*vswitch)["uplinks"]);
            if (std::find(uplinks.begin(), uplinks.end(), pnic) == uplinks.end())
                uplinks.push_back(pnic);
            (*vswitch)["uplinks"] = uplinks;
            // A group that follows its switch's policy keeps doing so.
            Json& owner = pg->contains("teamingPolicy") && (*pg)["teamingPolicy"].is_object()
                              ? *pg
                              : *vswitch;
            auto policy = M::PolicyFromJson(Sim::Object(owner, "teamingPolicy"));
            policy.AddActiveUplink(pnic);
            owner["teamingPolicy"] = M::PolicyToJson(policy);
        });
    }

    void RemoveUplink(const HN::PortGroup& group, const std::string& pnic) const override {
        Sim::CheckFault("portGroup.removeUplink");
        Sim::Update([&](Json& state) {
            Json& net = M::Net(state);
            auto [vswitch, pg] = RequireGroup(net, group);
            Json& owner = pg->contains("teamingPolicy") && (*pg)["teamingPolicy"].is_object()
                              ? *pg
                              : *vswitch;
            auto policy = M::PolicyFromJson(Sim::Object(owner, "teamingPolicy"));
            if (!policy.RemoveUplink(pnic))
                throw HostCtlException("Uplink " + pnic + " is not used by port group " +
                                       group.GetName());
            owner["teamingPolicy"] = M::PolicyToJson(policy);
            // Still wanted by another group of the switch: it stays an uplink.
            for (const auto& other : (*vswitch)["portGroups"])
                if (&other != pg && M::EffectivePolicy(*vswitch, other).HasUplink(pnic)) return;
            auto uplinks = M::Strings((*vswitch)["uplinks"]);
            std::erase(uplinks, pnic);
            (*vswitch)["uplinks"] = uplinks;
            auto own = M::PolicyFromJson(Sim::Object(*vswitch, "teamingPolicy"));
            if (own.RemoveUplink(pnic)) (*vswitch)["teamingPolicy"] = M::PolicyToJson(own);
        });
    }
};

}  // namespace

std::shared_ptr<const HN::PortGroupOps> PortGroupOperations() {
    static const auto ops = std::make_shared<const PortGroupOpsImpl>();
    return ops;
}

}  // namespace ZrkCtl::Network
