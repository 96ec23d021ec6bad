// The system information of a Linux host: the administrator's welcome text
// (/etc/tesk/welcome, markup, when the file exists), alerts (the system log:
// a Linux host keeps no alert list of its own), the keyboard layout
// (linuxhost/keyboard.h) and firewall rulesets (none are managed here).
#pragma once

#include "hostctl/system.h"

namespace LinuxHost {

inline constexpr const char kWelcomeFile[] = "/etc/tesk/welcome";

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

}  // namespace LinuxHost
