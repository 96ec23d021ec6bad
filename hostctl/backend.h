// The host backend: where the console's host-control objects come from. The
// program picks one backend at start-up (SetBackend); every screen asks
// TheBackend() for the objects it needs and talks to them through the
// HostCtl interfaces only, so another host can be served without touching
// the screens.
#pragma once

#include <memory>
#include <string>

#include "hostctl/adv.h"
#include "hostctl/agents.h"
#include "hostctl/change_record.h"
#include "hostctl/configuration.h"
#include "hostctl/hardware.h"
#include "hostctl/host_watch.h"
#include "hostctl/lockdown.h"
#include "hostctl/logs.h"
#include "hostctl/network.h"
#include "hostctl/offers.h"
#include "hostctl/operations_agent.h"
#include "hostctl/pinger.h"
#include "hostctl/port_group_creator.h"
#include "hostctl/power.h"
#include "hostctl/resolver.h"
#include "hostctl/shell_services.h"
#include "hostctl/smartcard.h"
#include "hostctl/support_info.h"
#include "hostctl/system.h"

namespace HostCtl {

// Each method hands out a new object; making one does not ask the host, its
// calls do (and fail with HostCtl::Lib::HostCtlException).
class Backend {
public:
    virtual ~Backend() = default;

    // Networking.
    virtual std::unique_ptr<Network::NetworkInfo> GetNetworkInfo() const = 0;
    virtual std::unique_ptr<Network::VirtualSwitchInfo> GetVirtualSwitchInfo() const = 0;
    // A standard switch by name.
    virtual std::unique_ptr<Network::Portset> GetPortset(const std::string& name) const = 0;
    // A port group by name alone.
    virtual std::unique_ptr<Network::NamedPortGroup> GetPortGroup(
        const std::string& name) const = 0;
    // A distributed switch by name.
    virtual std::unique_ptr<Network::QdsSwitch> GetQdsSwitch(const std::string& name) const = 0;
    virtual std::unique_ptr<Network::ZerkelNicInfo> GetZerkelNicInfo() const = 0;
    // A physical NIC by name; stale until refreshed.
    virtual std::unique_ptr<Network::Pnic> GetPnic(const std::string& name) const = 0;
    // The default gateways and the DNS settings of a network stack
    // ("defaultNetStack"); the calls of an object for a stack the host does
    // not have fail.
    virtual std::unique_ptr<Network::RoutingInfo> GetRoutingInfo(
        const std::string& netStack) const = 0;
    virtual std::unique_ptr<Network::DnsConfig> GetDnsConfig(const std::string& netStack) const = 0;
    // Name resolution through the DNS settings of a network stack.
    virtual std::unique_ptr<Network::Resolver> GetResolver(const std::string& netStack) const = 0;
    // The echo test of the management network test.
    virtual std::unique_ptr<Network::Pinger> GetPinger() const = 0;
    // New port groups on the standard switches.
    virtual std::unique_ptr<Network::PortGroupCreator> GetPortGroupCreator() const = 0;
    // The network-virtualisation operations agent.
    virtual std::unique_ptr<Network::OperationsAgent> GetOperationsAgent() const = 0;

    // Hardware.
    virtual std::unique_ptr<Hardware::HardwareInfo> GetHardwareInfo() const = 0;
    virtual std::unique_ptr<Hardware::CpuInfo> GetCpuInfo() const = 0;
    virtual std::unique_ptr<Hardware::MemoryInfo> GetMemoryInfo() const = 0;
    virtual std::unique_ptr<Hardware::SmartCardInfo> GetSmartCardInfo() const = 0;

    // System.
    virtual std::unique_ptr<System::SystemInfo> GetSystemInfo() const = 0;
    virtual std::unique_ptr<Resource::ResourceInfo> GetResourceInfo() const = 0;
    // Writes the host's user accounts (the passwords the host authenticates
    // with now) to the persistent configuration store.
    virtual void StoreUserAccountsToCs() const = 0;

    // The virtual machines' and the host's power.
    virtual std::unique_ptr<Power::PowerControl> GetPowerControl() const = 0;
    // The management agents.
    virtual std::unique_ptr<Agents::ManagementAgents> GetManagementAgents() const = 0;

    // Administration: the local shell and SSH, lockdown mode, the
    // configuration as a whole (backup, factory reset, custom extensions) and
    // the support information.
    virtual std::unique_ptr<Services::ShellServices> GetShellServices() const = 0;
    virtual std::unique_ptr<Lockdown::LockdownMode> GetLockdownMode() const = 0;
    virtual std::unique_ptr<Configuration::HostConfiguration> GetHostConfiguration() const = 0;
    virtual std::unique_ptr<Support::SupportInformation> GetSupportInformation() const = 0;
    // The logs of "View System Logs".
    virtual std::unique_ptr<Logs::SystemLogs> GetSystemLogs() const = 0;

    // Advanced options.
    virtual std::unique_ptr<Adv::AdvancedOption> GetAdvancedOptions() const = 0;
    virtual std::unique_ptr<Adv::UserAdvancedOption> GetUserAdvancedOptions() const = 0;

    // The record that makes a change of several steps whole or nothing.
    virtual std::unique_ptr<Changes::ChangeRecord> GetChangeRecord() const = 0;

    // Empty when the host offers feature; otherwise one sentence saying why
    // not, for the pane or dialog that would have offered it. Asking does not
    // touch the host more than once per feature (a backend probes and keeps
    // the answer). Every feature is offered unless a backend says otherwise.
    virtual std::string WhyNotOffered(Feature feature) const;

    // A watch on the host's network and state, made when called (never
    // before the first frame); null when the backend cannot watch, and the
    // screens then show what they read.
    virtual std::unique_ptr<HostWatch> WatchHost() const;
};

// The backend the program chose. Throws HostCtl::Lib::HostCtlException when
// none was set.
Backend& TheBackend();

// Makes backend the one TheBackend() answers (null: none). Objects handed out
// by a replaced backend must not be used afterwards.
void SetBackend(std::unique_ptr<Backend> backend);

}  // namespace HostCtl
