// Standard switches as Linux bridges: their uplinks (the physical NICs that
// are ports of the bridge) and the one port group a bridge has here, the
// management network of the management bridge.
#include <net/if.h>
#include <algorithm>

#include "hostctl/exception.h"
#include "linuxhost/fail.h"
#include "linuxhost/linux_backend.h"
#include "linuxhost/management.h"
#include "linuxhost/net_objects.h"
#include "linuxhost/nic_facts.h"
#include "platform/syslog.h"

namespace LinuxHost {
namespace {

namespace HN = HostCtl::Network;
using HostCtl::Lib::HostCtlException;

// The most ports a Linux bridge takes.
constexpr std::int64_t kBridgePorts = 1024;

bool Contains(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

void RequirePhysicalNic(const std::string& pnic) {
    const KernelNet net = ReadKernelNet();
    const LinkFact* link = net.Link(pnic);
    if (link == nullptr || !IsPhysicalNic(*link)) Fail("Physical NIC " + pnic + " not found");
}

// More than one active uplink needs a NIC team; the kernel may lack it.
void RequireTeamingFor(std::size_t uplinks) {
    if (uplinks < 2) return;
    const std::string why = WhyNetworkFeatureNotOffered(HostCtl::Feature::NicTeaming);
    if (!why.empty()) Fail(why);
}

// Ports of the bridge that are not physical NICs: virtual machines' taps.
std::int64_t Clients(const KernelNet& net, const std::string& bridge) {
    const LinkFact* br = net.Link(bridge);
    if (br == nullptr) return 0;
    return std::count_if(net.links.begin(), net.links.end(), [&](const LinkFact& link) {
        return link.master == br->index && !IsPhysicalNic(link);
    });
}

class ManagementGroupOps : public HN::PortGroupOps {
public:
    std::uint16_t GetVlanId(const HN::PortGroup& group) const override {
        return Config(group).vlanId;
    }
    void SetVlanId(const HN::PortGroup& group, std::uint16_t vlanId) const override {
        Config(group);
        if (vlanId > 4095) Fail("Invalid VLAN ID " + std::to_string(vlanId));
        if (vlanId == 4095) Fail("This host cannot carry the management network on all VLANs");
        if (vlanId != 0) {
            const std::string why = WhyNetworkFeatureNotOffered(HostCtl::Feature::Vlan);
            if (!why.empty()) Fail(why);
        }
        ChangeManagement([&](ManagementConfig& c) { c.vlanId = vlanId; });
    }
    std::int64_t GetActiveClients(const HN::PortGroup& group) const override {
        Config(group);
        return 1 + Clients(ReadKernelNet(), group.GetVirtualSwitchName());
    }
    HN::NicTeamingPolicy GetTeamingPolicy(const HN::PortGroup& group) const override {
        HN::NicTeamingPolicy policy;
        policy.SetActiveUplinks(Config(group).uplinks);
        return policy;
    }
    void SetTeamingPolicy(const HN::PortGroup& group,
                          const HN::NicTeamingPolicy& policy) const override {
        Config(group);
        RequireTeamingFor(policy.GetActiveUplinks().size());
        ChangeManagement([&](ManagementConfig& c) { c.uplinks = policy.GetActiveUplinks(); });
    }
    void AddUplink(const HN::PortGroup& group, const std::string& pnic) const override {
        const ManagementConfig config = Config(group);
        RequirePhysicalNic(pnic);
        if (Contains(config.uplinks, pnic)) return;
        RequireTeamingFor(config.uplinks.size() + 1);
        ChangeManagement([&](ManagementConfig& c) { c.uplinks.push_back(pnic); });
    }
    void RemoveUplink(const HN::PortGroup& group, const std::string& pnic) const override {
        if (!Contains(Config(group).uplinks, pnic))
            Fail("Port group " + group.GetName() + " has no uplink " + pnic);
        ChangeManagement([&](ManagementConfig& c) { std::erase(c.uplinks, pnic); });
        // networkd leaves a NIC that no file matches any more in its bridge.
        ReleaseLink(pnic);
    }

private:
    static ManagementConfig Config(const HN::PortGroup& group) {
        auto config = LoadManagement(ReadKernelNet());
        if (!config || group.GetName() != kManagementPortGroup ||
            group.GetVirtualSwitchName() != config->bridge)
            Fail("Port group " + group.GetName() + " not found on " + group.GetVirtualSwitchName());
        return *config;
    }
};

class LinuxPortset : public HN::Portset {
public:
    explicit LinuxPortset(std::string name) : name_(std::move(name)) {}
    const std::string& GetName() const override { return name_; }
    bool IsValidVirtualSwitch() const override {
        const KernelNet net = ReadKernelNet();
        const LinkFact* link = net.Link(name_);
        return (link != nullptr && link->kind == "bridge") || Management(net).has_value();
    }
    std::vector<std::string> GetUplinks() const override {
        const KernelNet net = ReadKernelNet();
        if (auto config = Management(net)) return config->uplinks;
        std::vector<std::string> uplinks;
        const LinkFact* bridge = net.Link(name_);
        if (bridge == nullptr || bridge->kind != "bridge") Fail("No virtual switch named " + name_);
        for (const auto& link : net.links)
            if (link.master == bridge->index && IsPhysicalNic(link)) uplinks.push_back(link.name);
        return uplinks;
    }
    std::vector<std::string> GetPortGroups() const override {
        if (Management(ReadKernelNet())) return {kManagementPortGroup};
        return {};
    }
    std::int64_t GetNumPorts() const override { return kBridgePorts; }
    std::int64_t GetUsedPorts() const override {
        const KernelNet net = ReadKernelNet();
        const bool management = Management(net).has_value();
        return static_cast<std::int64_t>(GetUplinks().size()) + Clients(net, name_) +
               (management ? 1 : 0);
    }
    std::int64_t GetConfiguredPorts() const override { return kBridgePorts; }
    HN::NicTeamingPolicy GetTeamingPolicy() const override {
        HN::NicTeamingPolicy policy;
        policy.SetActiveUplinks(GetUplinks());
        return policy;
    }
    void SetTeamingPolicy(const HN::NicTeamingPolicy& policy) const override {
        for (const auto& uplink : policy.GetActiveUplinks())
            if (!Contains(GetUplinks(), uplink)) Fail(uplink + " is not an uplink of " + name_);
        RequireTeamingFor(policy.GetActiveUplinks().size());
        Ours();
        ChangeManagement([&](ManagementConfig& c) { c.uplinks = policy.GetActiveUplinks(); });
    }
    void AddUplink(const std::string& pnic) const override {
        RequirePhysicalNic(pnic);
        const ManagementConfig config = Ours();
        if (Contains(config.uplinks, pnic)) return;
        RequireTeamingFor(config.uplinks.size() + 1);
        ChangeManagement([&](ManagementConfig& c) { c.uplinks.push_back(pnic); });
    }
    void RemoveUplink(const std::string& pnic) const override {
        const auto config = Management(ReadKernelNet());
        if (!config || !Contains(config->uplinks, pnic)) return;
        ChangeManagement([&](ManagementConfig& c) { std::erase(c.uplinks, pnic); });
        ReleaseLink(pnic);
    }
    HN::PortGroup AddPortGroup(const std::string& name, std::uint16_t /*vlanId*/) const override {
        Fail("Port group " + name +
             " cannot be added: a bridge on this host carries only the management network");
    }

private:
    std::optional<ManagementConfig> Management(const KernelNet& net) const {
        auto config = LoadManagement(net);
        if (config && config->bridge == name_) return config;
        return std::nullopt;
    }
    ManagementConfig Ours() const {
        auto config = Management(ReadKernelNet());
        if (!config) Fail("The console changes only the management network's bridge, not " + name_);
        return *config;
    }
    std::string name_;
};

class LinuxNamedPortGroup : public HN::NamedPortGroup {
public:
    explicit LinuxNamedPortGroup(std::string name) : name_(std::move(name)) {}
    bool IsValidPortGroup() const override {
        return name_ == kManagementPortGroup && LoadManagement(ReadKernelNet()).has_value();
    }

private:
    std::string name_;
};

class LinuxSwitchInfo : public HN::VirtualSwitchInfo {
public:
    std::vector<std::unique_ptr<HN::Portset>> GetVirtualSwitches(
        HN::PortsetKind kind) const override {
        std::vector<std::unique_ptr<HN::Portset>> switches;
        if (kind == HN::PortsetKind::Qds) return switches;
        const KernelNet net = ReadKernelNet();
        std::vector<std::string> names;
        if (auto config = LoadManagement(net)) names.push_back(config->bridge);
        for (const auto& link : net.links)
            if (link.kind == "bridge" && !Contains(names, link.name)) names.push_back(link.name);
        for (const auto& name : names) switches.push_back(MakePortset(name));
        return switches;
    }
    std::vector<std::unique_ptr<HN::QdsSwitch>> GetQdsSwitches() const override { return {}; }
    std::unique_ptr<HN::Portset> AddVirtualSwitch(const std::string& name,
                                                  std::int64_t numPorts) const override {
        if (name.empty() || name.size() >= IFNAMSIZ ||
            name.find_first_of("/ .:") != std::string::npos)
            Fail("Invalid virtual switch name '" + name + "'");
        if (numPorts < 1 || numPorts > 4096)
            Fail("Invalid number of ports " + std::to_string(numPorts));
        if (ReadKernelNet().Link(name) != nullptr || MakePortset(name)->IsValidVirtualSwitch())
            Fail("A virtual switch named " + name + " already exists");
        Fail("Virtual switch " + name +
             " cannot be added: the console keeps one bridge, the management network's");
    }
};

}  // namespace

std::shared_ptr<const HN::PortGroupOps> ManagementPortGroupOps() {
    static const auto ops = std::make_shared<const ManagementGroupOps>();
    return ops;
}

std::unique_ptr<HN::Portset> MakePortset(const std::string& name) {
    return std::make_unique<LinuxPortset>(name);
}

std::unique_ptr<HN::NamedPortGroup> MakeNamedPortGroup(const std::string& name) {
    return std::make_unique<LinuxNamedPortGroup>(name);
}

std::unique_ptr<HN::VirtualSwitchInfo> MakeVirtualSwitchInfo() {
    return std::make_unique<LinuxSwitchInfo>();
}

}  // namespace LinuxHost
