// System information (welcome message, alerts, keyboard layouts, firewall
// rulesets) and running virtual machines. Interfaces only; a host backend
// (hostctl/backend.h) hands out the objects.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace HostCtl::System {

class FirewallRuleset;

// What the host does for a firewall ruleset, named by its id. A backend
// implements it; FirewallRuleset handles call it.
class FirewallRulesetOps {
public:
    virtual ~FirewallRulesetOps() = default;
    virtual bool IsServiceControlled(const std::string& id) const = 0;
    virtual void SetEnabled(const std::string& id, bool enabled) const = 0;
    virtual void Apply(const std::string& id) const = 0;
};

// A firewall ruleset of the host, by id ("sshServer"). Each call reads or
// changes the host at once. A handle without a host fails every call.
class FirewallRuleset {
public:
    FirewallRuleset(std::string id, std::shared_ptr<const FirewallRulesetOps> ops)
        : id_(std::move(id)), ops_(std::move(ops)) {}
    const std::string& GetId() const { return id_; }
    // Whether the ruleset follows its service: the console opens it when it
    // starts the service (the query it makes before enabling).
    bool IsServiceControlled() const;
    // Changes the configured state; Apply() makes it the one the firewall
    // acts on.
    void SetEnabled(bool enabled) const;
    void Apply() const;

private:
    const FirewallRulesetOps& Ops() const;
    std::string id_;
    std::shared_ptr<const FirewallRulesetOps> ops_;
};

class SystemInfo {
public:
    virtual ~SystemInfo() = default;
    // The administrator's welcome text; empty when none is set.
    virtual std::string GetWelcomeMessage() const = 0;
    // Raises an alert in the host's alert list (kept in order, repeats too).
    virtual void SetSystemAlert(const std::string& text) const = 0;

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

namespace HostCtl::Resource {

class ResourceInfo {
public:
    virtual ~ResourceInfo() = default;
    // Whether any virtual machine is powered on.
    virtual bool HasRunningVirtualMachines() const = 0;
};

}  // namespace HostCtl::Resource
