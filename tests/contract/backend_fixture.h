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
