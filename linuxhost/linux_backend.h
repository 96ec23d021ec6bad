// The Linux backend's class. Its methods are defined by area, one file each:
// backend_network.cpp (links, bridges, addresses, networkd, DNS, ping),
// backend_system.cpp (what the host is, keyboard, configuration, support
// information, advanced options, smart cards) and backend_machine.cpp
// (virtual machines, power, services, management agents, lockdown).
#pragma once

#include <memory>
#include <string>

#include "hostctl/backend.h"

namespace LinuxHost {

class LinuxBackend : public HostCtl::Backend {
public:
    LinuxBackend();
    ~LinuxBackend() override;

    // backend_network.cpp
    std::unique_ptr<HostCtl::Network::NetworkInfo> GetNetworkInfo() const override;
    std::unique_ptr<HostCtl::Network::VirtualSwitchInfo> GetVirtualSwitchInfo() const override;
    std::unique_ptr<HostCtl::Network::Portset> GetPortset(const std::string& name) const override;
    std::unique_ptr<HostCtl::Network::NamedPortGroup> GetPortGroup(
        const std::string& name) const override;
    std::unique_ptr<HostCtl::Network::QdsSwitch> GetQdsSwitch(
        const std::string& name) const override;
    std::unique_ptr<HostCtl::Network::ZerkelNicInfo> GetZerkelNicInfo() const override;
    std::unique_ptr<HostCtl::Network::Pnic> GetPnic(const std::string& name) const override;
    std::unique_ptr<HostCtl::Network::RoutingInfo> GetRoutingInfo(
        const std::string& netStack) const override;
    std::unique_ptr<HostCtl::Network::DnsConfig> GetDnsConfig(
        const std::string& netStack) const override;
    std::unique_ptr<HostCtl::Network::Resolver> GetResolver(
        const std::string& netStack) const override;
    std::unique_ptr<HostCtl::Network::Pinger> GetPinger() const override;
    std::unique_ptr<HostCtl::Network::PortGroupCreator> GetPortGroupCreator() const override;
    std::unique_ptr<HostCtl::Network::OperationsAgent> GetOperationsAgent() const override;
    std::unique_ptr<HostCtl::HostWatch> WatchHost() const override;

    // backend_system.cpp
    std::unique_ptr<HostCtl::Hardware::HardwareInfo> GetHardwareInfo() const override;
    std::unique_ptr<HostCtl::Hardware::CpuInfo> GetCpuInfo() const override;
    std::unique_ptr<HostCtl::Hardware::MemoryInfo> GetMemoryInfo() const override;
    std::unique_ptr<HostCtl::Hardware::SmartCardInfo> GetSmartCardInfo() const override;
    std::unique_ptr<HostCtl::System::SystemInfo> GetSystemInfo() const override;
    void StoreUserAccountsToCs() const override;
    std::unique_ptr<HostCtl::Configuration::HostConfiguration> GetHostConfiguration()
        const override;
    std::unique_ptr<HostCtl::Support::SupportInformation> GetSupportInformation() const override;
    std::unique_ptr<HostCtl::Logs::SystemLogs> GetSystemLogs() const override;
    std::unique_ptr<HostCtl::Adv::AdvancedOption> GetAdvancedOptions() const override;
    std::unique_ptr<HostCtl::Adv::UserAdvancedOption> GetUserAdvancedOptions() const override;

    // backend_machine.cpp
    std::unique_ptr<HostCtl::Resource::ResourceInfo> GetResourceInfo() const override;
    std::unique_ptr<HostCtl::Power::PowerControl> GetPowerControl() const override;
    std::unique_ptr<HostCtl::Agents::ManagementAgents> GetManagementAgents() const override;
    std::unique_ptr<HostCtl::Services::ShellServices> GetShellServices() const override;
    std::unique_ptr<HostCtl::Lockdown::LockdownMode> GetLockdownMode() const override;

    // linux_backend.cpp: asks the area that knows (each area's file has a
    // function for its own features).
    std::string WhyNotOffered(HostCtl::Feature feature) const override;
    // linux_backend.cpp: linuxhost/change_record.h, with each area's hook.
    std::unique_ptr<HostCtl::Changes::ChangeRecord> GetChangeRecord() const override;
};

// Each area's features (see HostCtl::Feature): empty when offered.
std::string WhyNetworkFeatureNotOffered(HostCtl::Feature feature);  // backend_network.cpp
std::string WhySystemFeatureNotOffered(HostCtl::Feature feature);   // backend_system.cpp
std::string WhyMachineFeatureNotOffered(HostCtl::Feature feature);  // backend_machine.cpp

// What makes the running host follow files a change record put back.
void FollowNetworkFiles();  // backend_network.cpp
void StartAgentsAgain();    // backend_machine.cpp

// What a call of an area not served on this host throws.
[[noreturn]] void NotOnThisHost(const char* what);

}  // namespace LinuxHost
