#include "hostctl/system.h"

#include <algorithm>
#include <fstream>
#include <map>

#include "hostctl/exception.h"
#include "hostctl/simhost.h"
#include "platform/hostroot.h"

namespace {

using Json = ZrkCtl::Sim::Json;
using HostCtl::Lib::HostCtlException;

// "/systemInfo", made an object when missing.
Json& Info(Json& state) {
    Json& info = state["systemInfo"];
    if (!info.is_object()) info = Json::object();
    return info;
}

Json LoadInfo() {
    Json state = ZrkCtl::Sim::Load();
    return Info(state);
}

Json& RequireRuleset(Json& info, const std::string& id) {
    Json& rulesets = info["firewall"]["rulesets"];
    if (rulesets.is_array())
        for (auto& r : rulesets)
            if (r.value("id", "") == id) return r;
    throw HostCtlException("Firewall ruleset " + id + " not found");
}

std::vector<std::string> Strings(const Json& array) {
    std::vector<std::string> out;
    if (array.is_array())
        for (const auto& s : array)
            if (s.is_string()) out.push_back(s.get<std::string>());
    return out;
}

void RequireLayout(const Json& info, const std::string& layout) {
    auto layouts = Strings(info.value("keyboard", Json::object()).value("layouts", Json::array()));
    if (std::find(layouts.begin(), layouts.end(), layout) == layouts.end())
        throw HostCtlException("Unknown keyboard layout '" + layout + "'");
}

}  // namespace

namespace HostCtl::System {

bool FirewallRuleset::IsEnabled() const {
    ZrkCtl::Sim::CheckFault("firewall.isEnabled");
    Json info = LoadInfo();
    return RequireRuleset(info, id_).value("enabled", false);
}

bool FirewallRuleset::IsServiceControlled() const {
    ZrkCtl::Sim::CheckFault("firewall.isServiceControlled");
    Json info = LoadInfo();
    return RequireRuleset(info, id_).value("serviceControlled", false);
}

void FirewallRuleset::SetEnabled(bool enabled) const {
    ZrkCtl::Sim::CheckFault("firewall.setEnabled");
    ZrkCtl::Sim::Update(
        [&](Json& state) { RequireRuleset(Info(state), id_)["enabled"] = enabled; });
}

bool FirewallRuleset::IsActive() const {
    ZrkCtl::Sim::CheckFault("firewall.isActive");
    Json info = LoadInfo();
    return RequireRuleset(info, id_).value("active", false);
}

void FirewallRuleset::Apply() const {
    ZrkCtl::Sim::CheckFault("firewall.apply");
    ZrkCtl::Sim::Update([&](Json& state) {
        Json& r = RequireRuleset(Info(state), id_);
        r["active"] = r.value("enabled", false);
    });
}

}  // namespace HostCtl::System

namespace ZrkCtl::System {

std::string SystemInfoImpl::GetWelcomeMessage() const {
    Sim::CheckFault("system.getWelcomeMessage");
    return LoadInfo().value("welcomeMessage", "");
}

void SystemInfoImpl::SetWelcomeMessage(const std::string& message) const {
    Sim::CheckFault("system.setWelcomeMessage");
    Sim::Update([&](Json& state) { Info(state)["welcomeMessage"] = message; });
}

void SystemInfoImpl::SetSystemAlert(const std::string& text) const {
    Sim::CheckFault("system.setSystemAlert");
    Sim::Update([&](Json& state) {
        Json& alerts = Info(state)["alerts"];
        if (!alerts.is_array()) alerts = Json::array();
        alerts.push_back(text);
    });
}

std::vector<std::string> SystemInfoImpl::GetSystemAlerts() const {
    Sim::CheckFault("system.getSystemAlerts");
    return Strings(LoadInfo().value("alerts", Json::array()));
}

std::vector<std::string> SystemInfoImpl::GetKeyboardLayouts() const {
    Sim::CheckFault("system.getKeyboardLayouts");
    return Strings(LoadInfo().value("keyboard", Json::object()).value("layouts", Json::array()));
}

std::string SystemInfoImpl::GetKeyboardLayout() const {
    Sim::CheckFault("system.getKeyboardLayout");
    return LoadInfo().value("keyboard", Json::object()).value("layout", "");
}

void SystemInfoImpl::LoadKeyboardMappings(const std::string& layout) const {
    Sim::CheckFault("system.loadKeyboardMappings");
    Sim::Update([&](Json& state) {
        Json& info = Info(state);
        RequireLayout(info, layout);
        info["keyboard"]["loadedMappings"] = layout;
    });
}

void SystemInfoImpl::SetKeyboardLayout(const std::string& layout) const {
    Sim::CheckFault("system.setKeyboardLayout");
    Sim::Update([&](Json& state) {
        Json& info = Info(state);
        RequireLayout(info, layout);
        info["keyboard"]["layout"] = layout;
    });
}

HostCtl::System::FirewallRuleset SystemInfoImpl::GetFirewallRulesetById(
    const std::string& id) const {
    Sim::CheckFault("system.getFirewallRulesetById");
    Json info = LoadInfo();
    RequireRuleset(info, id);
    return HostCtl::System::FirewallRuleset(id);
}

}  // namespace ZrkCtl::System

namespace ZrkCtl::Util {

void SysinfoUtil::SysinfoGet(ZSI_Node node, void* out, std::size_t size) {
    if (ZSI_Get(node, out, size) != 0)
        throw HostCtl::Lib::HostCtlException("Unable to read system information node " +
                                             std::to_string(static_cast<int>(node)));
}

}  // namespace ZrkCtl::Util

namespace HostCtl {

std::unique_ptr<System::SystemInfo> Host::GetSystemInfo() const {
    ZrkCtl::Sim::CheckFault("host.getSystemInfo");
    return std::make_unique<ZrkCtl::System::SystemInfoImpl>();
}

std::unique_ptr<Host> HostFactory::GetHost() {
    ZrkCtl::Sim::CheckFault("host.getHost");
    return std::make_unique<Host>();
}

}  // namespace HostCtl

namespace ZrkCtl::Resource {

std::vector<std::string> ResourceInfoImpl::GetRunningVirtualMachines() const {
    Sim::CheckFault("resource.getRunningVirtualMachines");
    Json state = Sim::Load();
    std::vector<std::string> running;
    for (const auto& vm : state.value("vms", Json::array()))
        if (vm.is_object() && vm.value("running", false)) running.push_back(vm.value("name", ""));
    return running;
}

bool ResourceInfoImpl::HasRunningVirtualMachines() const {
    Sim::CheckFault("resource.hasRunningVirtualMachines");
    return !GetRunningVirtualMachines().empty();
}

}  // namespace ZrkCtl::Resource

namespace HostCtl::Authentication {

void StoreUserAccountsToCs() {
    ZrkCtl::Sim::CheckFault("authentication.storeUserAccountsToCs");
    // The user file the host authenticates against: "name:password:outcome"
    // per line.
    std::ifstream in(Tesk::Platform::HostPath("/etc/simhost/users"));
    if (!in) throw Lib::HostCtlException("Cannot read the user accounts");
    std::map<std::string, std::string> passwords;
    for (std::string line; std::getline(in, line);) {
        auto first = line.find(':');
        auto second = line.find(':', first == std::string::npos ? first : first + 1);
        if (first == std::string::npos || second == std::string::npos) continue;
        passwords[line.substr(0, first)] = line.substr(first + 1, second - first - 1);
    }
    ZrkCtl::Sim::Update([&](Json& state) {
        Json& users = state["users"];
        if (!users.is_array()) users = Json::array();
        for (auto& user : users) {
            auto it = passwords.find(user.value("name", ""));
            if (it != passwords.end()) user["password"] = it->second;
        }
        Json& store = state["userAccountStore"];
        if (!store.is_object()) store = Json::object();
        store["storeCount"] = store.value("storeCount", 0) + 1;
    });
}

}  // namespace HostCtl::Authentication
