// The simulated host's system information, firewall, virtual machines and
// user-account store.
#include "simhost/system.h"

#include <algorithm>
#include <map>
#include <sstream>

#include "hostctl/exception.h"
#include "platform/hostroot.h"
#include "platform/regular_file.h"
#include "simhost/simhost.h"
#include "simhost/state_values.h"

namespace {

using Json = ZrkCtl::Sim::Json;
using HostCtl::Lib::HostCtlException;
using ZrkCtl::Sim::Flag;
using ZrkCtl::Sim::Object;
using ZrkCtl::Sim::Text;
using ZrkCtl::Sim::Texts;

// "/systemInfo", made an object when missing.
Json& Info(Json& state) {
    Json& info = state["systemInfo"];
    if (!info.is_object()) info = Json::object();
    return info;
}

// "/systemInfo" of a snapshot; an empty object when missing.
const Json& Info(const Json& state) {
    return Object(state, "systemInfo");
}

// The system information, with the snapshot that holds it.
// The fault of the operation is looked for in the same snapshot.
struct InfoSnapshot {
    explicit InfoSnapshot(const char* operation) : state(ZrkCtl::Sim::SnapshotFor(operation)) {}
    std::shared_ptr<const Json> state;
    const Json& info = Info(*state);
};

Json& RequireRuleset(Json& info, const std::string& id) {
    Json& rulesets = info["firewall"]["rulesets"];
    if (rulesets.is_array())
        for (auto& r : rulesets)
            if (Text(r, "id") == id) return r;
    throw HostCtlException("Firewall ruleset " + id + " not found");
}

const Json& RequireRuleset(const Json& info, const std::string& id) {
    for (const auto& r : ZrkCtl::Sim::Entries(Object(info, "firewall"), "rulesets"))
        if (Text(r, "id") == id) return r;
    throw HostCtlException("Firewall ruleset " + id + " not found");
}

void RequireLayout(const Json& info, const std::string& layout) {
    auto layouts = Texts(Object(info, "keyboard"), "layouts");
    if (std::find(layouts.begin(), layouts.end(), layout) == layouts.end())
        throw HostCtlException("Unknown keyboard layout '" + layout + "'");
}

}  // namespace

namespace ZrkCtl::System {
namespace {

class FirewallRulesetOpsImpl : public HostCtl::System::FirewallRulesetOps {
public:
    bool IsServiceControlled(const std::string& id) const override {
        return Flag(RequireRuleset(InfoSnapshot("firewall.isServiceControlled").info, id),
                    "serviceControlled");
    }

    void SetEnabled(const std::string& id, bool enabled) const override {
        Sim::CheckFault("firewall.setEnabled");
        Sim::Update([&](Json& state) { RequireRuleset(Info(state), id)["enabled"] = enabled; });
    }

    void Apply(const std::string& id) const override {
        Sim::CheckFault("firewall.apply");
        Sim::Update([&](Json& state) {
            Json& r = RequireRuleset(Info(state), id);
            r["active"] = Flag(r, "enabled");
        });
    }
};

}  // namespace

std::shared_ptr<const HostCtl::System::FirewallRulesetOps> FirewallOperations() {
    static const auto ops = std::make_shared<const FirewallRulesetOpsImpl>();
    return ops;
}

std::string SystemInfoImpl::GetWelcomeMessage() const {
    return Text(InfoSnapshot("system.getWelcomeMessage").info, "welcomeMessage");
}

void SystemInfoImpl::SetSystemAlert(const std::string& text) const {
    Sim::CheckFault("system.setSystemAlert");
    Sim::Update([&](Json& state) {
        Json& alerts = Info(state)["alerts"];
        if (!alerts.is_array()) alerts = Json::array();
        alerts.push_back(text);
    });
}

std::vector<std::string> SystemInfoImpl::GetKeyboardLayouts() const {
    return Texts(Object(InfoSnapshot("system.getKeyboardLayouts").info, "keyboard"), "layouts");
}

std::string SystemInfoImpl::GetKeyboardLayout() const {
    return Text(Object(InfoSnapshot("system.getKeyboardLayout").info, "keyboard"), "layout");
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
    RequireRuleset(InfoSnapshot("system.getFirewallRulesetById").info, id);
    return HostCtl::System::FirewallRuleset(id, FirewallOperations());
}

}  // namespace ZrkCtl::System

namespace ZrkCtl::Util {

void SysinfoUtil::SysinfoGet(ZSI_Node node, void* out, std::size_t size) {
    if (ZSI_Get(node, out, size) != 0)
        throw HostCtl::Lib::HostCtlException("Unable to read system information node " +
                                             std::to_string(static_cast<int>(node)));
}

}  // namespace ZrkCtl::Util

namespace ZrkCtl::Resource {

bool ResourceInfoImpl::HasRunningVirtualMachines() const {
    auto state = Sim::SnapshotFor("resource.hasRunningVirtualMachines");
    const auto& vms = ZrkCtl::Sim::Entries(*state, "vms");
    // Every entry is read, so a wrong one fails the call wherever it stands.
    bool running = false;
    for (const auto& vm : vms) running = Flag(vm, "running") || running;
    return running;
}

}  // namespace ZrkCtl::Resource

namespace ZrkCtl::System {

void StoreUserAccountsToCs() {
    ZrkCtl::Sim::CheckFault("authentication.storeUserAccountsToCs");
    // The user file the host authenticates against: "name:hash:outcome" per
    // line. It is the accounts' only store of hashes (mode 0600); the state,
    // readable by all, takes each user's outcome.
    std::string failure;
    const auto text =
        Tesk::Platform::ReadRegularFile(Tesk::Platform::HostPath("/etc/simhost/users"), &failure);
    if (!text) throw HostCtlException("Cannot read the user accounts: " + failure);
    std::istringstream in(*text);
    // Each user's outcome (an expired user whose password was changed is a
    // normal one again).
    std::map<std::string, std::string> outcomes;
    for (std::string line; std::getline(in, line);) {
        auto first = line.find(':');
        auto second = line.find(':', first == std::string::npos ? first : first + 1);
        if (first == std::string::npos || second == std::string::npos) continue;
        outcomes[line.substr(0, first)] = line.substr(second + 1);
    }
    ZrkCtl::Sim::Update([&](Json& state) {
        Json& users = state["users"];
        if (!users.is_array()) users = Json::array();
        for (auto& user : users) {
            if (!user.is_object()) continue;
            // A state written before the hashes moved out loses them here.
            user.erase("password");
            user.erase("passwordHash");
            auto it = outcomes.find(Text(user, "name"));
            if (it != outcomes.end() && !it->second.empty()) user["outcome"] = it->second;
        }
        Json& store = state["userAccountStore"];
        if (!store.is_object()) store = Json::object();
        store["storeCount"] = ZrkCtl::Sim::Integer<std::int64_t>(store, "storeCount", 0) + 1;
    });
}

}  // namespace ZrkCtl::System
