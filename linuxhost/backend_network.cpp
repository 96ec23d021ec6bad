// The Linux backend's network: physical NICs and links over netlink, a
// standard switch as a Linux bridge, addresses, routes and DNS, persisted as
// systemd-networkd files and applied over its bus interface; ping and name
// resolution for the network test.
#include "linuxhost/linux_backend.h"

namespace LinuxHost {

std::unique_ptr<HostCtl::Network::NetworkInfo> LinuxBackend::GetNetworkInfo() const {
    NotOnThisHost("The network information");
}

std::unique_ptr<HostCtl::Network::VirtualSwitchInfo> LinuxBackend::GetVirtualSwitchInfo() const {
    NotOnThisHost("The virtual switches");
}

std::unique_ptr<HostCtl::Network::Portset> LinuxBackend::GetPortset(const std::string& /*name*/) const {
    NotOnThisHost("A standard switch");
}

std::unique_ptr<HostCtl::Network::NamedPortGroup> LinuxBackend::GetPortGroup(const std::string& /*name*/) const {
    NotOnThisHost("A port group");
}

std::unique_ptr<HostCtl::Network::QdsSwitch> LinuxBackend::GetQdsSwitch(const std::string& /*name*/) const {
    NotOnThisHost("A distributed switch");
}

std::unique_ptr<HostCtl::Network::ZerkelNicInfo> LinuxBackend::GetZerkelNicInfo() const {
    NotOnThisHost("The kernel NICs");
}

std::unique_ptr<HostCtl::Network::Pnic> LinuxBackend::GetPnic(const std::string& /*name*/) const {
    NotOnThisHost("A physical NIC");
}

std::unique_ptr<HostCtl::Network::RoutingInfo> LinuxBackend::GetRoutingInfo(const std::string& /*netStack*/) const {
    NotOnThisHost("The routing information");
}

std::unique_ptr<HostCtl::Network::DnsConfig> LinuxBackend::GetDnsConfig(const std::string& /*netStack*/) const {
    NotOnThisHost("The DNS configuration");
}

std::unique_ptr<HostCtl::Network::Resolver> LinuxBackend::GetResolver(const std::string& /*netStack*/) const {
    NotOnThisHost("Name resolution");
}

std::unique_ptr<HostCtl::Network::Pinger> LinuxBackend::GetPinger() const {
    NotOnThisHost("The echo test");
}

std::unique_ptr<HostCtl::Network::PortGroupCreator> LinuxBackend::GetPortGroupCreator() const {
    NotOnThisHost("Creating port groups");
}

std::unique_ptr<HostCtl::Network::OperationsAgent> LinuxBackend::GetOperationsAgent() const {
    NotOnThisHost("The operations agent");
}

std::string WhyNetworkFeatureNotOffered(HostCtl::Feature /*feature*/) {
    return {};
}

}  // namespace LinuxHost

namespace LinuxHost {
void FollowNetworkFiles() { NotOnThisHost("The management network"); }
}  // namespace LinuxHost
