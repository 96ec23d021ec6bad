#include "linuxhost/system_info.h"

#include "hostctl/exception.h"
#include "linuxhost/host_files.h"
#include "linuxhost/keyboard.h"
#include "platform/syslog.h"

namespace LinuxHost {

std::string SystemInfoImpl::GetWelcomeMessage() const {
    std::string text = ReadHostFile(kWelcomeFile).value_or("");
    while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
    return text;
}

void SystemInfoImpl::SetSystemAlert(const std::string& text) const {
    Tesk::Platform::Log(LOG_WARNING, "Host alert: %s", text.c_str());
}

std::vector<std::string> SystemInfoImpl::GetKeyboardLayouts() const {
    std::vector<std::string> names;
    for (auto& layout : Keyboard::InstalledLayouts())
        names.push_back(std::move(layout.description));
    return names;
}

std::string SystemInfoImpl::GetKeyboardLayout() const {
    return Keyboard::CurrentLayout();
}

void SystemInfoImpl::LoadKeyboardMappings(const std::string& layout) const {
    Keyboard::ApplyLayout(layout);
}

void SystemInfoImpl::SetKeyboardLayout(const std::string& layout) const {
    Keyboard::WriteLayout(layout);
}

HostCtl::System::FirewallRuleset SystemInfoImpl::GetFirewallRulesetById(
    const std::string& id) const {
    throw HostCtl::Lib::HostCtlException("The firewall ruleset " + id +
                                         " is not managed on this host");
}

}  // namespace LinuxHost
