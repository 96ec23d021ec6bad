// The simulated host's backend: hands out the ZrkCtl objects.
#include "simhost/backend.h"

#include "hostctl/exception.h"
#include "simhost/adv.h"
#include "simhost/agents.h"
#include "simhost/change_record.h"
#include "simhost/configuration.h"
#include "simhost/hardware.h"
#include "simhost/lockdown.h"
#include "simhost/logs.h"
#include "simhost/network.h"
#include "simhost/operations_agent.h"
#include "simhost/pinger.h"
#include "simhost/port_group_creator.h"
#include "simhost/power.h"
#include "simhost/resolver.h"
#include "simhost/shell_services.h"
#include "simhost/simhost.h"
#include "simhost/state_values.h"
#include "simhost/state_watch.h"
#include "simhost/support_info.h"
#include "simhost/system.h"

namespace ZrkCtl {
namespace {

namespace HN = HostCtl::Network;

class SimulatedBackend : public HostCtl::Backend {
public:
    std::unique_ptr<HN::NetworkInfo> GetNetworkInfo() const override {
        return std::make_unique<Network::NetworkInfoImpl>();
    }
    std::unique_ptr<HN::VirtualSwitchInfo> GetVirtualSwitchInfo() const override {
        return std::make_unique<Network::VirtualSwitchInfoImpl>();
    }
    std::unique_ptr<HN::Portset> GetPortset(const std::string& name) const override {
        return std::make_unique<Network::PortsetImpl>(name);
    }
    std::unique_ptr<HN::NamedPortGroup> GetPortGroup(const std::string& name) const override {
        return std::make_unique<Network::PortGroupImpl>(name);
    }
    std::unique_ptr<HN::QdsSwitch> GetQdsSwitch(const std::string& name) const override {
        return std::make_unique<Network::QdsSwitchImpl>(name);
    }
    std::unique_ptr<HN::ZerkelNicInfo> GetZerkelNicInfo() const override {
        return std::make_unique<Network::ZerkelNicInfoImpl>();
    }
    std::unique_ptr<HN::Pnic> GetPnic(const std::string& name) const override {
        return std::make_unique<Network::PnicImpl>(name);
    }
    std::unique_ptr<HN::RoutingInfo> GetRoutingInfo(const std::string& netStack) const override {
        return std::make_unique<Network::RoutingInfoImpl>(netStack);
    }
    std::unique_ptr<HN::DnsConfig> GetDnsConfig(const std::string& netStack) const override {
        return std::make_unique<Network::DnsConfigImpl>(netStack);
    }
    std::unique_ptr<HN::Resolver> GetResolver(const std::string& netStack) const override {
        return Network::MakeResolver(netStack);
    }
    std::unique_ptr<HN::Pinger> GetPinger() const override {
        return std::make_unique<Network::PingerImpl>();
    }
    std::unique_ptr<HN::PortGroupCreator> GetPortGroupCreator() const override {
        return std::make_unique<Network::PortGroupCreatorImpl>();
    }
    std::unique_ptr<HN::OperationsAgent> GetOperationsAgent() const override {
        return std::make_unique<Network::OperationsAgentImpl>();
    }

    std::unique_ptr<HostCtl::Hardware::HardwareInfo> GetHardwareInfo() const override {
        return std::make_unique<Hardware::HardwareInfoImpl>();
    }
    std::unique_ptr<HostCtl::Hardware::CpuInfo> GetCpuInfo() const override {
        return std::make_unique<Hardware::CpuInfoImpl>();
    }
    std::unique_ptr<HostCtl::Hardware::MemoryInfo> GetMemoryInfo() const override {
        return std::make_unique<Hardware::MemoryInfoImpl>();
    }
    std::unique_ptr<HostCtl::Hardware::SmartCardInfo> GetSmartCardInfo() const override {
        return std::make_unique<Hardware::SmartCardInfoImpl>();
    }

    std::unique_ptr<HostCtl::System::SystemInfo> GetSystemInfo() const override {
        return std::make_unique<System::SystemInfoImpl>();
    }
    std::unique_ptr<HostCtl::Resource::ResourceInfo> GetResourceInfo() const override {
        return std::make_unique<Resource::ResourceInfoImpl>();
    }
    void StoreUserAccountsToCs() const override { System::StoreUserAccountsToCs(); }

    std::unique_ptr<HostCtl::Power::PowerControl> GetPowerControl() const override {
        return std::make_unique<Power::PowerControlImpl>();
    }
    std::unique_ptr<HostCtl::Agents::ManagementAgents> GetManagementAgents() const override {
        return std::make_unique<Agents::ManagementAgentsImpl>();
    }

    std::unique_ptr<HostCtl::Services::ShellServices> GetShellServices() const override {
        return std::make_unique<Services::ShellServicesImpl>();
    }
    std::unique_ptr<HostCtl::Lockdown::LockdownMode> GetLockdownMode() const override {
        return std::make_unique<Lockdown::LockdownModeImpl>();
    }
    std::unique_ptr<HostCtl::Configuration::HostConfiguration> GetHostConfiguration()
        const override {
        return std::make_unique<Configuration::HostConfigurationImpl>();
    }
    std::unique_ptr<HostCtl::Support::SupportInformation> GetSupportInformation() const override {
        return std::make_unique<Support::SupportInformationImpl>();
    }
    std::unique_ptr<HostCtl::Logs::SystemLogs> GetSystemLogs() const override {
        return std::make_unique<Logs::SystemLogsImpl>();
    }

    std::unique_ptr<HostCtl::Adv::AdvancedOption> GetAdvancedOptions() const override {
        return std::make_unique<Adv::AdvancedOptionImpl>();
    }
    std::unique_ptr<HostCtl::Adv::UserAdvancedOption> GetUserAdvancedOptions() const override {
        return std::make_unique<Adv::UserAdvancedOptionImpl>();
    }

    std::unique_ptr<HostCtl::Changes::ChangeRecord> GetChangeRecord() const override {
        return std::make_unique<Changes::ChangeRecordImpl>();
    }

    // "/notOffered/<feature>": the reason the simulated host gives; every
    // feature is offered when there is none (or no state to ask).
    std::string WhyNotOffered(HostCtl::Feature feature) const override {
        static constexpr std::pair<HostCtl::Feature, const char*> kNames[] = {
            {HostCtl::Feature::LockdownMode, "lockdownMode"},
            {HostCtl::Feature::LiveCoreDump, "liveCoreDump"},
            {HostCtl::Feature::CustomExtensions, "customExtensions"},
            {HostCtl::Feature::SmartCardLogin, "smartCardLogin"},
            {HostCtl::Feature::Vlan, "vlan"},
            {HostCtl::Feature::NicTeaming, "nicTeaming"},
            {HostCtl::Feature::SecondStandardSwitch, "secondStandardSwitch"},
        };
        for (const auto& [known, name] : kNames) {
            if (known != feature) continue;
            try {
                return Sim::Text(Sim::Object(*Sim::Snapshot(), "notOffered"), name);
            } catch (const HostCtl::Lib::HostCtlException&) {
                return {};
            }
        }
        return {};
    }

    std::unique_ptr<HostCtl::HostWatch> WatchHost() const override { return WatchState(); }
};

}  // namespace

std::unique_ptr<HostCtl::Backend> MakeSimulatedBackend() {
    return std::make_unique<SimulatedBackend>();
}

}  // namespace ZrkCtl
