// The host's network as a whole: its physical NICs, its port groups, the
// management interface, IPv6, the default gateways, and the network's
// factory state (cleared, then set up on a new bridge with DHCP).
#include <algorithm>
#include <filesystem>

#include "hostctl/exception.h"
#include "linuxhost/fail.h"
#include "linuxhost/management.h"
#include "linuxhost/net_objects.h"
#include "linuxhost/nic_facts.h"
#include "platform/hostroot.h"
#include "platform/regular_file.h"
#include "platform/syslog.h"
#include "store/replace_file.h"

namespace LinuxHost {
namespace {

namespace HN = HostCtl::Network;
using HostCtl::Lib::HostCtlException;

constexpr char kIpv6Sysctl[] = "/etc/sysctl.d/60-tesk-ipv6.conf";

std::vector<std::string> PhysicalNics(const KernelNet& net) {
    std::vector<std::string> names;
    for (const auto& link : net.links)
        if (IsPhysicalNic(link)) names.push_back(link.name);
    std::sort(names.begin(), names.end());
    return names;
}

class LinuxNetworkInfo : public HN::NetworkInfo {
public:
    bool IsZrkIpv6Enabled() const override {
        const auto text =
            Tesk::Platform::ReadRegularFile("/proc/sys/net/ipv6/conf/all/disable_ipv6");
        return text && !text->empty() && (*text)[0] == '0';
    }
    void SetZrkIpv6Enabled(bool enabled) const override {
        if (enabled == IsZrkIpv6Enabled() &&
            !Tesk::Platform::ReadRegularFile(Tesk::Platform::HostPath(kIpv6Sysctl)))
            return;
        const std::string value = enabled ? "0" : "1";
        try {
            // A host without sysctl settings of its own yet has no folder.
            std::filesystem::create_directories(
                std::filesystem::path(Tesk::Platform::HostPath(kIpv6Sysctl)).parent_path());
            Sim::ReplaceFile(Tesk::Platform::HostPath(kIpv6Sysctl),
                             "# IPv6 of the host, set by the console; counts from the next boot.\n"
                             "net.ipv6.conf.all.disable_ipv6 = " +
                                 value + "\nnet.ipv6.conf.default.disable_ipv6 = " + value + "\n",
                             0644);
        } catch (const std::runtime_error& error) {
            Fail(std::string("Writing ") + kIpv6Sysctl + " failed: " + error.what());
        }
    }
    std::vector<std::unique_ptr<HN::Pnic>> GetPnics(HN::PnicKind kind) const override {
        const KernelNet net = ReadKernelNet();
        std::vector<std::string> used;
        if (kind != HN::PnicKind::All)
            if (auto config = LoadManagement(net)) used = config->uplinks;
        std::vector<std::unique_ptr<HN::Pnic>> pnics;
        for (const auto& name : PhysicalNics(net)) {
            const bool isUsed = std::find(used.begin(), used.end(), name) != used.end();
            if ((kind == HN::PnicKind::Connected && !isUsed) ||
                (kind == HN::PnicKind::Unused && isUsed))
                continue;
            pnics.push_back(MakePnic(name));
        }
        return pnics;
    }
    std::vector<HN::PortGroup> GetAllPortGroups(HN::PortsetKind kind) const override {
        std::vector<HN::PortGroup> groups;
        if (kind == HN::PortsetKind::Qds) return groups;
        if (auto config = LoadManagement(ReadKernelNet()))
            groups.emplace_back(kManagementPortGroup, config->bridge, ManagementPortGroupOps());
        return groups;
    }
    void UpdateManagementInterface() override {
        auto config = LoadManagement(ReadKernelNet());
        management_ = config ? config->Interface() : std::string();
        updated_ = true;
    }
    std::unique_ptr<HN::ZrkNic> GetManagementInterface() override {
        if (!updated_) UpdateManagementInterface();
        if (management_.empty()) return nullptr;
        return MakeManagementNic(management_);
    }
    void ClearNetworkConfig() const override {
        Tesk::Platform::Log(LOG_INFO, "Removing the management network's networkd files");
        RemoveManagement();
    }
    void AutoConfigNetwork() const override {
        if (!ReadOurFiles().empty()) Fail("The network is not cleared");
        const KernelNet net = ReadKernelNet();
        const auto nics = PhysicalNics(net);
        if (nics.empty()) Fail("The host has no physical NIC");
        std::string first = nics.front();
        for (const auto& name : nics)
            if (net.Link(name)->carrier) {
                first = name;
                break;
            }
        ManagementConfig config;
        config.bridge = ManagementBridge();
        config.mac = net.Link(first)->mac;
        config.uplinks = {first};
        config.ip.SetUseDhcp(true);
        config.ip.SetDhcpDns(true);
        config.ip.EnableIpv6(IsZrkIpv6Enabled());
        config.ip.SetUseIpv6RouterAdvertised(config.ip.IsIpv6Enabled());
        Tesk::Platform::Log(LOG_INFO, "Setting up bridge %s with %s on DHCP", config.bridge.c_str(),
                            first.c_str());
        SaveManagement(config);
    }
    void DisableNetDumper() const override {
        Tesk::Platform::Log(LOG_INFO, "This host sends no network dumps; nothing to switch off");
    }

private:
    std::string management_;
    bool updated_ = false;
};

class LinuxZerkelNicInfo : public HN::ZerkelNicInfo {
public:
    std::vector<std::unique_ptr<HN::ZrkNic>> GetZerkelNics(HN::PortsetKind kind) const override {
        std::vector<std::unique_ptr<HN::ZrkNic>> nics;
        if (kind == HN::PortsetKind::Qds) return nics;
        if (auto config = LoadManagement(ReadKernelNet()))
            nics.push_back(MakeManagementNic(config->Interface()));
        return nics;
    }
};

class LinuxRoutingInfo : public HN::RoutingInfo {
public:
    HN::Ipv4Address GetZerkelDefaultGateway() const override {
        const KernelNet net = ReadKernelNet();
        return net.gateway4.empty() ? HN::Ipv4Address() : HN::Ipv4Address(net.gateway4);
    }
    void SetZerkelDefaultGateway(const HN::Ipv4Address& gateway,
                                 bool checkReachable) const override {
        ChangeManagement([&](ManagementConfig& c) {
            if (checkReachable && !gateway.IsAnyAddress()) {
                const std::uint32_t mask = c.ip.GetIpv4Netmask().GetAddress();
                if (c.ip.GetUseDhcp() || c.ip.GetIpv4UseNone() ||
                    (gateway.GetAddress() & mask) != (c.ip.GetIpv4Address().GetAddress() & mask))
                    Fail("Gateway " + gateway.GetStringAddress() +
                         " is not in the management interface's subnet");
            }
            c.ip.SetIpv4Gateway(gateway);
        });
    }
    HN::Ipv6Address GetIpv6ZerkelDefaultGateway() const override {
        const KernelNet net = ReadKernelNet();
        if (net.gateway6.empty()) return HN::Ipv6Address();
        HN::Ipv6Address gateway(net.gateway6);
        // A link-local gateway is reached over its link, which names its scope.
        const LinkFact* link = net.Link(net.gateway6Link);
        if (gateway.IsLinkLocal() && link != nullptr)
            return HN::Ipv6Address(net.gateway6 + "%" + link->name);
        return gateway;
    }
    void SetIpv6ZerkelDefaultGateway(const HN::Ipv6Address& gateway) const override {
        ChangeManagement([&](ManagementConfig& c) { c.ip.SetIpv6Gateway(gateway); });
    }
};

}  // namespace

std::unique_ptr<HN::NetworkInfo> MakeNetworkInfo() {
    return std::make_unique<LinuxNetworkInfo>();
}

std::unique_ptr<HN::ZerkelNicInfo> MakeZerkelNicInfo() {
    return std::make_unique<LinuxZerkelNicInfo>();
}

std::unique_ptr<HN::RoutingInfo> MakeRoutingInfo() {
    return std::make_unique<LinuxRoutingInfo>();
}

}  // namespace LinuxHost
