// "/bin/rux-cmd": the management agent's command tool.
//   rux-cmd [-U user] command
// Users the agent does not allow get exit status 255; commands fail with 1
// while the management agents are stopped.
#include <functional>
#include <iostream>
#include <map>

#include "sim/tools.h"
#include "sim/tools/toolkit.h"

namespace Sim::Tools {
namespace {

constexpr const char kTool[] = "rux-cmd";
constexpr size_t kRequestsKept = 50;

bool Flag(const Json& section, const char* key, bool fallback) {
    auto it = section.find(key);
    return it != section.end() && it->is_boolean() ? it->get<bool>() : fallback;
}

bool UserAllowed(const Json& state, const std::string& user) {
    const Json agent = state.value("hostAgent", Json::object());
    auto users = agent.find("allowedUsers");
    if (users == agent.end() || !users->is_array()) return true;
    for (const auto& u : *users)
        if (u.is_string() && u.get<std::string>() == user) return true;
    return false;
}

void Record(Json& state, const std::string& user, const std::string& command, int status) {
    Json& requests = Section(state, "hostAgent")["requests"];
    if (!requests.is_array()) requests = Json::array();
    requests.push_back({{"user", user}, {"command", command}, {"status", status}});
    while (requests.size() > kRequestsKept) requests.erase(requests.begin());
}

// One service switch: "running" or "enabled" of services.<name>.
std::function<int(Json&)> SetService(const char* name, const char* what, bool value) {
    return [=](Json& state) {
        Json& service = Section(Section(state, "services"), name);
        service[what] = value;
        return 0;
    };
}

int Query(Json& state, const char* key, bool fallback) {
    std::cout << (Flag(state.value("lockdown", Json::object()), key, fallback) ? "true" : "false")
              << "\n";
    return 0;
}

int Lockdown(Json& state, bool enter) {
    Json& lockdown = Section(state, "lockdown");
    bool enabled = Flag(lockdown, "enabled", false);
    if (enter && !Flag(lockdown, "possible", true))
        return Fail(kTool, "Lockdown mode cannot be enabled on this host");
    if (enabled == enter)
        return Fail(kTool,
                    std::string("Lockdown mode is already ") + (enter ? "enabled" : "disabled"));
    lockdown["enabled"] = enter;
    return 0;
}

int AutoStop(Json& state) {
    Json& vms = state["vms"];
    if (!vms.is_array()) return 0;
    for (auto& vm : vms)
        if (vm.is_object() && vm.value("autoStart", false)) vm["running"] = false;
    return 0;
}

const std::map<std::string, std::function<int(Json&)>>& Commands() {
    static const std::map<std::string, std::function<int(Json&)>> commands = {
        {"ruxsvc/auth/lockdown_is_enabled", [](Json& s) { return Query(s, "enabled", false); }},
        {"ruxsvc/auth/lockdown_is_possible", [](Json& s) { return Query(s, "possible", true); }},
        {"ruxsvc/auth/lockdown_mode_enter", [](Json& s) { return Lockdown(s, true); }},
        {"ruxsvc/auth/lockdown_mode_exit", [](Json& s) { return Lockdown(s, false); }},
        {"internalsvc/refresh",
         [](Json& s) {
             Json& agent = Section(s, "hostAgent");
             agent["refreshes"] = agent.value("refreshes", 0) + 1;
             return 0;
         }},
        {"hostsvc/start_kova_shell", SetService("KovaShell", "running", true)},
        {"hostsvc/stop_kova_shell", SetService("KovaShell", "running", false)},
        {"hostsvc/enable_kova_shell", SetService("KovaShell", "enabled", true)},
        {"hostsvc/disable_kova_shell", SetService("KovaShell", "enabled", false)},
        {"hostsvc/start_ssh", SetService("SSH", "running", true)},
        {"hostsvc/stop_ssh", SetService("SSH", "running", false)},
        {"hostsvc/enable_ssh", SetService("SSH", "enabled", true)},
        {"hostsvc/disable_ssh", SetService("SSH", "enabled", false)},
        {"hostsvc/autostartmanager/autostop", &AutoStop},
    };
    return commands;
}

int RuxCmdMain(int argc, char** argv) {
    auto args = Arguments(argc, argv);
    std::string user = "root";
    size_t i = 0;
    if (args.size() >= 2 && args[0] == "-U") {
        user = args[1];
        i = 2;
    }
    if (i >= args.size()) return Fail(kTool, "usage: rux-cmd [-U user] command");
    const std::string command = args[i];
    // A fault for one command: "/faults/rux-cmd:<command>".
    if (auto status = ApplyFault(std::string(kTool) + ":" + command)) return *status;

    int status = 0;
    Sim::Update([&](Json& state) {
        if (!UserAllowed(state, user)) {
            status = Fail(kTool, "Permission to run " + command + " denied for user " + user, 255);
        } else if (!state.value("hostAgent", Json::object()).value("running", true)) {
            status = Fail(kTool, "Failed to connect to the host agent");
        } else if (auto it = Commands().find(command); it == Commands().end()) {
            status = Fail(kTool, "Unknown command '" + command + "'");
        } else {
            status = it->second(state);
        }
        Record(state, user, command, status);
    });
    return status;
}

}  // namespace

SIM_TOOL({"/bin/rux-cmd"}, &RuxCmdMain);

}  // namespace Sim::Tools
