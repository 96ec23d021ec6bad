// The Linux backend's network: physical NICs and links over netlink, a
// standard switch as a Linux bridge, addresses, routes and DNS, persisted as
// systemd-networkd files and applied over its bus interface; ping and name
// resolution for the network test (docs/linux-host-network.md).
#include "hostctl/exception.h"
#include "linuxhost/card_watch.h"
#include "linuxhost/linux_backend.h"
#include "linuxhost/management.h"
#include "linuxhost/net_objects.h"
#include "linuxhost/netlink.h"
#include "linuxhost/networkd_bus.h"
#include "platform/syslog.h"

namespace LinuxHost {
namespace {

constexpr char kDefaultNetStack[] = "defaultNetStack";

// This host has one network stack, the kernel's.
void RequireDefaultStack(const std::string& netStack) {
    if (netStack == kDefaultNetStack) return;
    const std::string text = "Network stack " + netStack + " does not exist on this host";
    Tesk::Platform::Log(LOG_ERR, "%s", text.c_str());
    throw HostCtl::Lib::HostCtlException(text);
}

class NoOperationsAgent : public HostCtl::Network::OperationsAgent {
public:
    bool IsVersion3Present() const override {
        Tesk::Platform::Log(LOG_INFO, "This host runs no network-virtualisation operations agent");
        return false;
    }
    bool MigrateZrkNic(const std::string& nic, const std::string& portGroup) const override {
        Tesk::Platform::Log(LOG_ERR, "Moving %s to %s failed: this host runs no operations agent",
                            nic.c_str(), portGroup.c_str());
        return false;
    }
};

class NoPortGroupCreator : public HostCtl::Network::PortGroupCreator {
public:
    bool CreatePortGroup(const std::string& portGroup, const std::string& vswitch) const override {
        Tesk::Platform::Log(LOG_ERR,
                            "Adding port group %s to %s failed: a bridge on this host carries "
                            "only the management network",
                            portGroup.c_str(), vswitch.c_str());
        return false;
    }
};

}  // namespace

std::unique_ptr<HostCtl::Network::NetworkInfo> LinuxBackend::GetNetworkInfo() const {
    return MakeNetworkInfo();
}

std::unique_ptr<HostCtl::Network::VirtualSwitchInfo> LinuxBackend::GetVirtualSwitchInfo() const {
    return MakeVirtualSwitchInfo();
}

std::unique_ptr<HostCtl::Network::Portset> LinuxBackend::GetPortset(const std::string& name) const {
    return MakePortset(name);
}

std::unique_ptr<HostCtl::Network::NamedPortGroup> LinuxBackend::GetPortGroup(
    const std::string& name) const {
    return MakeNamedPortGroup(name);
}

std::unique_ptr<HostCtl::Network::QdsSwitch> LinuxBackend::GetQdsSwitch(
    const std::string& /*name*/) const {
    NotOnThisHost("A distributed switch");
}

std::unique_ptr<HostCtl::Network::ZerkelNicInfo> LinuxBackend::GetZerkelNicInfo() const {
    return MakeZerkelNicInfo();
}

std::unique_ptr<HostCtl::Network::Pnic> LinuxBackend::GetPnic(const std::string& name) const {
    return MakePnic(name);
}

std::unique_ptr<HostCtl::Network::RoutingInfo> LinuxBackend::GetRoutingInfo(
    const std::string& netStack) const {
    RequireDefaultStack(netStack);
    return MakeRoutingInfo();
}

std::unique_ptr<HostCtl::Network::DnsConfig> LinuxBackend::GetDnsConfig(
    const std::string& netStack) const {
    RequireDefaultStack(netStack);
    return MakeDnsConfig();
}

std::unique_ptr<HostCtl::Network::Resolver> LinuxBackend::GetResolver(
    const std::string& netStack) const {
    RequireDefaultStack(netStack);
    return MakeResolver();
}

std::unique_ptr<HostCtl::Network::Pinger> LinuxBackend::GetPinger() const {
    return MakePinger();
}

std::unique_ptr<HostCtl::Network::PortGroupCreator> LinuxBackend::GetPortGroupCreator() const {
    return std::make_unique<NoPortGroupCreator>();
}

std::unique_ptr<HostCtl::Network::OperationsAgent> LinuxBackend::GetOperationsAgent() const {
    return std::make_unique<NoOperationsAgent>();
}

// Made after the first frame: the cards' watch starts with it.
std::unique_ptr<HostCtl::HostWatch> LinuxBackend::WatchHost() const {
    WatchSmartCards();
    return WatchNetwork();
}

// After a change record put our files back: VLAN links of the bridge that
// the files no longer name go, the files are applied as a change would apply
// them, and the kernel takes the host name of /etc/hostname.
void FollowNetworkFiles() {
    const std::string bridge = ManagementBridge();
    const auto config = ParseNetworkd(ReadOurFiles(), bridge);
    for (const auto& link : ReadKernelNet().links)
        if (link.kind == "vlan" && link.name.rfind(bridge + ".", 0) == 0 &&
            (!config || link.name != config->Interface()))
            DeleteLink(link.name);
    if (config)
        SaveManagement(*config);
    else
        Networkd::Reload();
    TakeHostnameFromFile();
}

std::string WhyNetworkFeatureNotOffered(HostCtl::Feature feature) {
    switch (feature) {
        case HostCtl::Feature::Vlan:
            if (!KernelHasLinkKind("vlan"))
                return "VLANs are not supported by this host's kernel (no 802.1Q driver).";
            return {};
        case HostCtl::Feature::NicTeaming:
            if (!KernelHasLinkKind("bond"))
                return "NIC teaming is not supported by this host's kernel (no bonding driver).";
            return {};
        case HostCtl::Feature::SecondStandardSwitch:
            return "This host keeps one bridge, the management network's, with its one port "
                   "group.";
        default:
            return {};
    }
}

}  // namespace LinuxHost
