// The Linux backend's network objects (the HostCtl::Network interfaces),
// made by backend_network.cpp. Each reads the kernel (netlink) and our
// networkd files when it is called; changes go through
// linuxhost/management.h.
#pragma once

#include <memory>
#include <string>

#include "hostctl/network.h"
#include "hostctl/pinger.h"
#include "hostctl/resolver.h"

namespace LinuxHost {

std::unique_ptr<HostCtl::Network::Pnic> MakePnic(const std::string& name);
std::unique_ptr<HostCtl::Network::ZrkNic> MakeManagementNic(const std::string& name);
std::shared_ptr<const HostCtl::Network::PortGroupOps> ManagementPortGroupOps();
std::unique_ptr<HostCtl::Network::Portset> MakePortset(const std::string& name);
std::unique_ptr<HostCtl::Network::NamedPortGroup> MakeNamedPortGroup(const std::string& name);
std::unique_ptr<HostCtl::Network::VirtualSwitchInfo> MakeVirtualSwitchInfo();
std::unique_ptr<HostCtl::Network::ZerkelNicInfo> MakeZerkelNicInfo();
std::unique_ptr<HostCtl::Network::NetworkInfo> MakeNetworkInfo();
std::unique_ptr<HostCtl::Network::RoutingInfo> MakeRoutingInfo();
std::unique_ptr<HostCtl::Network::DnsConfig> MakeDnsConfig();
// Gives the kernel the name /etc/hostname holds, where the kernel's name is
// this host's (dns_config.cpp).
void TakeHostnameFromFile();
std::unique_ptr<HostCtl::Network::Pinger> MakePinger();
std::unique_ptr<HostCtl::Network::Resolver> MakeResolver();

}  // namespace LinuxHost
