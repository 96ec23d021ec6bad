// System information (welcome message, alerts, keyboard layouts, firewall
// rulesets), the kernel's information nodes, the host object, running virtual
// machines and the user-account store.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "platform/zsi.h"

namespace HostCtl::System {

// A firewall ruleset of the host, by id ("sshServer"). Each call reads or
// changes the host at once.
class FirewallRuleset {
public:
    explicit FirewallRuleset(std::string id) : id_(std::move(id)) {}
    const std::string& GetId() const { return id_; }
    // The configured state.
    bool IsEnabled() const;
    // Whether the ruleset follows its service: the console opens it when it
    // starts the service (the query it makes before enabling).
    bool IsServiceControlled() const;
    // Changes the configured state; Apply() makes it the active one.
    void SetEnabled(bool enabled) const;
    // Whether the firewall lets the ruleset's traffic through now.
    bool IsActive() const;
    void Apply() const;

private:
    std::string id_;
};

class SystemInfo {
public:
    virtual ~SystemInfo() = default;
    // The administrator's welcome text; empty when none is set.
    virtual std::string GetWelcomeMessage() const = 0;
    virtual void SetWelcomeMessage(const std::string& message) const = 0;
    // Raises an alert in the host's alert list (kept in order, repeats too).
    virtual void SetSystemAlert(const std::string& text) const = 0;
    virtual std::vector<std::string> GetSystemAlerts() const = 0;

    // Layout names in the host's order, and the layout in use.
    virtual std::vector<std::string> GetKeyboardLayouts() const = 0;
    virtual std::string GetKeyboardLayout() const = 0;
    // Loads the layout's key map into the console; throws for an unknown layout.
    virtual void LoadKeyboardMappings(const std::string& layout) const = 0;
    // Makes the layout the configured one; throws for an unknown layout.
    virtual void SetKeyboardLayout(const std::string& layout) const = 0;

    // Throws when no ruleset has the id.
    virtual FirewallRuleset GetFirewallRulesetById(const std::string& id) const = 0;
};

}  // namespace HostCtl::System

namespace ZrkCtl::System {

class SystemInfoImpl : public HostCtl::System::SystemInfo {
public:
    std::string GetWelcomeMessage() const override;
    void SetWelcomeMessage(const std::string& message) const override;
    void SetSystemAlert(const std::string& text) const override;
    std::vector<std::string> GetSystemAlerts() const override;
    std::vector<std::string> GetKeyboardLayouts() const override;
    std::string GetKeyboardLayout() const override;
    void LoadKeyboardMappings(const std::string& layout) const override;
    void SetKeyboardLayout(const std::string& layout) const override;
    HostCtl::System::FirewallRuleset GetFirewallRulesetById(const std::string& id) const override;
};

}  // namespace ZrkCtl::System

namespace ZrkCtl::Util {

struct SysinfoUtil {
    // ZSI_Get; throws HostCtl::Lib::HostCtlException when the node cannot be
    // read.
    static void SysinfoGet(ZSI_Node node, void* out, std::size_t size);
};

}  // namespace ZrkCtl::Util

namespace HostCtl {

// The host the console runs on.
class Host {
public:
    std::unique_ptr<System::SystemInfo> GetSystemInfo() const;
};

struct HostFactory {
    static std::unique_ptr<Host> GetHost();
};

}  // namespace HostCtl

namespace ZrkCtl::Resource {

class ResourceInfoImpl {
public:
    // Names of the virtual machines that are powered on, in the host's order.
    std::vector<std::string> GetRunningVirtualMachines() const;
    bool HasRunningVirtualMachines() const;
};

}  // namespace ZrkCtl::Resource

namespace HostCtl::Authentication {

// Writes the host's user accounts (the passwords the host authenticates with
// now) to the persistent configuration store, the state's "users".
void StoreUserAccountsToCs();

}  // namespace HostCtl::Authentication
