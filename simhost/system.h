// The simulated host's system information, virtual machines and user-account
// store, over the state's "/systemInfo", "/vms" and "/users";
// and the reading of the kernel's information nodes.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "hostctl/system.h"
#include "platform/zsi.h"

namespace ZrkCtl::System {

class SystemInfoImpl : public HostCtl::System::SystemInfo {
public:
    std::string GetWelcomeMessage() const override;
    void SetSystemAlert(const std::string& text) const override;
    std::vector<std::string> GetKeyboardLayouts() const override;
    std::string GetKeyboardLayout() const override;
    void LoadKeyboardMappings(const std::string& layout) const override;
    void SetKeyboardLayout(const std::string& layout) const override;
    HostCtl::System::FirewallRuleset GetFirewallRulesetById(const std::string& id) const override;
};

// The firewall-ruleset operations every FirewallRuleset handle of the
// simulated host shares.
std::shared_ptr<const HostCtl::System::FirewallRulesetOps> FirewallOperations();

// Stores the accounts of the root's PAM user file ("/etc/simhost/users",
// which alone keeps the password hashes): each user's outcome goes into the
// state's "users" ("outcome"), and the store is counted in
// "userAccountStore".
void StoreUserAccountsToCs();

}  // namespace ZrkCtl::System

namespace ZrkCtl::Resource {

class ResourceInfoImpl : public HostCtl::Resource::ResourceInfo {
public:
    bool HasRunningVirtualMachines() const override;
};

}  // namespace ZrkCtl::Resource

namespace ZrkCtl::Util {

struct SysinfoUtil {
    // ZSI_Get; throws HostCtl::Lib::HostCtlException when the node cannot be
    // read.
    static void SysinfoGet(ZSI_Node node, void* out, std::size_t size);
};

}  // namespace ZrkCtl::Util
