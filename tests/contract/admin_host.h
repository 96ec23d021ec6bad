// What the administration contract needs of a host backend beyond its
// interfaces: a fresh host to run on, ways to make the host refuse an
// operation, and the few facts the interfaces do not tell (whether a service
// starts at boot, how often it restarted, who a request acted as). Each
// backend under test brings one implementation; the contract cases
// (admin_contract_test.cpp) use nothing else of it.
#pragma once

#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "hostctl/backend.h"

namespace ContractTest {

// What the host can be made to refuse.
enum class Refusal {
    ServiceManagement,  // the host's management refuses to switch services; the services work
    ServiceSwitching,   // every way of switching a service fails
    TimeoutStore,       // the shell time-outs can be neither read nor written
    LockdownChange,     // entering and leaving lockdown mode fail with an error text
    LockdownQuery,      // whether lockdown is on or possible cannot be asked
    Backup,             // the configuration backup fails
    FactoryReset,       // the factory reset fails
    ExtensionList,      // the custom extensions cannot be listed
    ExtensionRemoval,   // the custom extensions cannot be removed
};

class AdminHost {
public:
    virtual ~AdminHost() = default;

    // The backend under test, serving this host.
    virtual const HostCtl::Backend& backend() const = 0;

    // Makes the host refuse until allow(); answers the error text the host
    // then gives (empty when it gives none).
    virtual std::string refuse(Refusal what) = 0;
    virtual void allow() = 0;

    virtual void setLockdownPossible(bool possible) = 0;
    virtual void setCustomExtensionsInstalled(bool installed) = 0;
    // The support text the host keeps; none: the host has none.
    virtual void setSupportText(const std::optional<std::string>& text) = 0;
    // The support text exists but cannot be read (and must not block a reader).
    virtual void makeSupportTextUnreadable() = 0;

    virtual bool startsAtBoot(HostCtl::Services::Service service) const = 0;
    virtual int restarts(HostCtl::Services::Service service) const = 0;
    // Whether the firewall lets SSH through now.
    virtual bool sshFirewallOpen() const = 0;
    // The user the last request to the host's management acted as.
    virtual std::string lastActingUser() const = 0;
    virtual int backups() const = 0;
};

// A backend under test: its name in the test names and how to make its host.
struct AdminBackend {
    const char* name;
    std::unique_ptr<AdminHost> (*make)();
};
inline void PrintTo(const AdminBackend& backend, std::ostream* out) {
    *out << backend.name;
}

// The simulated host (simhost/) on a fresh root of the default profile.
std::unique_ptr<AdminHost> MakeSimulatedAdminHost();

}  // namespace ContractTest
