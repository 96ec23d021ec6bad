// What a host backend gives the contract suite: fresh hosts in the shapes the
// tests start from, and failures made to order. Each backend built registers
// one fixture (TESK_CONTRACT_BACKEND) and runs the whole suite with it.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hostctl/backend.h"

namespace TeskContract {

// The hosts a test starts from. A shape promises only what its comment says:
// tests find NICs, switches and port groups through the interfaces.
enum class Shape {
    // The management interface: usable, a static IPv4 address with the host's
    // default gateway in its subnet, IPv6 on (a static IPv6 address, no
    // DHCPv6), on a port group of a standard switch that has an uplink and a
    // second port group. A second standard switch with an uplink of its own
    // and a Zerkel NIC on one of its port groups. A physical NIC that no switch
    // uses. A host name, a domain, IPv4 and IPv6 name servers, a search
    // domain. Keyboard layouts. The firewall ruleset "sshServer", which
    // follows its service. A smart-card reader without a card. A running
    // virtual machine. The advanced option "/UserVars/TeskTimeOut" (an
    // integer), no user option "PXEBootEnabled", no welcome message.
    Managed,
    // As Managed, but the management interface is on a port of a distributed
    // switch of the host's own kind, which has at least two uplinks and no
    // host-local ports yet; a standard switch with a port group.
    ManagedOnDistributedSwitch,
    // No physical NIC, no switch, no Zerkel NIC.
    Bare,
};

// What a backend may lack. The cases that need it skip, with the reason the
// fixture gives.
enum class Capability {
    DistributedSwitches,  // Shape::ManagedOnDistributedSwitch
    InjectedFailures,     // FailOperation
    SmartCards,           // InsertSmartCard
    // Managed's second standard switch with its own uplink and Zerkel NIC,
    // and switches and port groups made beside the management network's.
    SecondStandardSwitch,
    FirewallRulesets,    // Managed's ruleset "sshServer"
    NewAdvancedOptions,  // an integer option made by setting it
    // A default gateway outside the management subnet, set without the check.
    OffSubnetGateways,
    // The hypervisor host's own factory layout: a cleared network keeps no
    // name servers, and the automatic one is "zSwitch0" with "Management
    // Network" and "VM Network" and the Zerkel NIC "zrk0".
    HypervisorFactoryLayout,
};

// What a host's own tools and services can be made to refuse, in the ways the
// interfaces must absorb (an answer of false, a fallback, a logged step)
// rather than throw.
enum class HostRefusal {
    ServiceManagement,  // the host's management refuses to switch services; the services work
    ServiceSwitching,   // every way of switching a service fails
    TimeoutStore,       // the shell time-outs can be neither read nor written
    LockdownChange,     // entering and leaving lockdown mode fail with an error text
    LockdownQuery,      // whether lockdown is on or possible cannot be asked
    Backup,             // the configuration backup fails
    FactoryReset,       // the factory reset fails
    ExtensionList,      // the custom extensions cannot be listed
    ExtensionRemoval,   // the custom extensions cannot be removed
    Ping,               // the echo tool fails
    PortGroupCreation,  // the tool that adds port groups fails
    AgentStop,          // the operations agent cannot be stopped
    Migration,          // the operations agent's move of a Zerkel NIC fails
};

// What a case can arrange beyond the shape and injected failures, and the
// facts the interfaces do not read back.
class HostConditions {
public:
    virtual ~HostConditions() = default;

    // Makes the host refuse what until BackendFixture::Recover(); answers the
    // error text the host then gives ("" when it gives none).
    virtual std::string Refuse(HostRefusal what) = 0;
    virtual void SetLockdownPossible(bool possible) = 0;
    virtual void SetCustomExtensionsInstalled(bool installed) = 0;
    // The support text the host keeps; none: the host has none.
    virtual void SetSupportText(const std::optional<std::string>& text) = 0;
    // The support text exists but cannot be read (and must not block a reader).
    virtual void MakeSupportTextUnreadable() = 0;
    // The operations agent's package at this version; null: not installed.
    virtual void InstallOperationsAgent(const char* version) = 0;

    virtual bool StartsAtBoot(HostCtl::Services::Service service) const = 0;
    virtual int Restarts(HostCtl::Services::Service service) const = 0;
    virtual bool SshFirewallOpen() const = 0;        // whether the firewall lets SSH through now
    virtual std::string LastActingUser() const = 0;  // of the last request to the host's management
    virtual int Backups() const = 0;
    virtual bool OperationsAgentRunning() const = 0;
    // The last host tool the backend ran, as "<command line> succeeded" or
    // "<command line> failed"; "" when none ran.
    virtual std::string LastToolRun() const = 0;
};

class BackendFixture {
public:
    virtual ~BackendFixture() = default;

    // Why no host can be made where the suite runs (every case then skips);
    // none when it can.
    virtual std::optional<std::string> WhyNoHost() const { return std::nullopt; }

    // Why the backend lacks the capability; none when it has it.
    virtual std::optional<std::string> Lacks(Capability capability) const = 0;

    // A fresh host of the shape and a backend that serves it. The host lasts
    // until the next Start or the fixture's end; the backend is dropped before
    // either.
    virtual std::unique_ptr<HostCtl::Backend> Start(Shape shape) = 0;

    // Makes every call of the operation, named by interface and method
    // ("DnsConfig.SetHostname", "Backend.StoreUserAccountsToCs"), fail with
    // HostCtl::Lib::HostCtlException carrying text, before it changes
    // anything, until Recover().
    virtual void FailOperation(const std::string& operation, const std::string& text) = 0;
    virtual void Recover() = 0;

    // Puts a card whose token holds the user ids into the first reader.
    virtual void InsertSmartCard(const std::vector<std::string>& userIds) = 0;

    // The host conditions and records the administration and network-action
    // cases need; null when the backend cannot arrange them (those cases then
    // skip).
    virtual HostConditions* Conditions() { return nullptr; }
};

using FixtureMaker = std::function<std::unique_ptr<BackendFixture>()>;

// Registers a backend's fixture under its name (the --backend= value).
bool RegisterBackend(const std::string& name, FixtureMaker make);

// A fresh fixture of the backend the suite runs against.
std::unique_ptr<BackendFixture> MakeChosenFixture();

}  // namespace TeskContract

// The one line that adds a backend's fixture to the suite, at namespace scope
// in the fixture's source.
#define TESK_CONTRACT_BACKEND(name, Fixture)                                  \
    static const bool kRegistered##Fixture = ::TeskContract::RegisterBackend( \
        name, [] { return std::unique_ptr<::TeskContract::BackendFixture>(new Fixture()); })
