// The service scripts:
//   "/sbin/services.sh" start|stop|restart|status       the management agents
//   "/etc/init.d/KovaShell", "/etc/init.d/SSH",
//   "/etc/init.d/plex-opsagent"  start|stop|restart|status
// "status" answers 0 while the service runs and 3 while it is stopped. The
// plex-opsagent script exists only while its package is installed ("vibs").
#include <iostream>

#include "sim/tools.h"
#include "sim/tools/toolkit.h"

namespace Sim::Tools {
namespace {

constexpr int kNotRunning = 3;

void Count(Json& section, const char* key) {
    section[key] = section.value(key, 0) + 1;
}

int ServicesMain(int argc, char** argv) {
    const std::string tool = ToolName(argv[0]);
    auto args = Arguments(argc, argv);
    const std::string verb = args.empty() ? "" : args[0];
    if (verb != "start" && verb != "stop" && verb != "restart" && verb != "status")
        return Fail(tool, "usage: services.sh start|stop|restart|status", 1);
    if (auto status = ApplyFault(tool + ":" + verb)) return *status;
    int status = 0;
    Sim::Update([&](Json& state) {
        Json& agent = Section(state, "hostAgent");
        if (verb == "status") {
            status = agent.value("running", true) ? 0 : kNotRunning;
            return;
        }
        if (verb != "start") {
            agent["running"] = false;
            Count(agent, "stops");
            std::cout << "Stopping management agents\n";
        }
        if (verb != "stop") {
            agent["running"] = true;
            Count(agent, "starts");
            std::cout << "Starting management agents\n";
        }
    });
    return status;
}

int InitScriptMain(int argc, char** argv) {
    const std::string name = ToolName(argv[0]);
    auto args = Arguments(argc, argv);
    const std::string verb = args.empty() ? "" : args[0];
    const bool optional = name == "plex-opsagent";
    if (optional && !Sim::Snapshot()->value("vibs", Json::object()).contains(name)) {
        std::cerr << "sh: /etc/init.d/" << name << ": not found\n";
        return 127;
    }
    if (verb != "start" && verb != "stop" && verb != "restart" && verb != "status")
        return Fail(name, "usage: " + name + " start|stop|restart|status", 1);
    if (auto status = ApplyFault(name + ":" + verb)) return *status;
    int status = 0;
    Sim::Update([&](Json& state) {
        Json& service = Section(Section(state, "services"), name);
        const bool running = service.value("running", optional);
        if (verb == "status") {
            std::cout << name << " is " << (running ? "running" : "not running") << "\n";
            status = running ? 0 : kNotRunning;
            return;
        }
        service["running"] = verb != "stop";
        if (verb == "restart") Count(service, "restarts");
        std::cout << name << (verb == "stop" ? " stopped" : " started") << "\n";
    });
    return status;
}

}  // namespace

SIM_TOOL({"/sbin/services.sh"}, &ServicesMain);
SIM_TOOL({"/etc/init.d/KovaShell", "/etc/init.d/SSH", "/etc/init.d/plex-opsagent"},
         &InitScriptMain);

}  // namespace Sim::Tools
