// "/sbin/reboot" and "/sbin/poweroff" [-f]: the host goes down. The command is
// recorded in "power", then the console is sent SIGTERM as init would.
#include "sim/tools.h"
#include "sim/tools/toolkit.h"

namespace Sim::Tools {
namespace {

int PowerMain(int argc, char** argv) {
    const std::string tool = ToolName(argv[0]);
    auto args = Arguments(argc, argv);
    bool forced = false;
    for (const auto& a : args) {
        if (a != "-f") return Fail(tool, "unknown option " + a, 2);
        forced = true;
    }
    const bool reboot = tool == "reboot";
    Sim::Update([&](Json& state) {
        Json& power = Section(state, "power");
        power["state"] = reboot ? "rebooting" : "poweredOff";
        power[reboot ? "reboots" : "poweroffs"] =
            power.value(reboot ? "reboots" : "poweroffs", 0) + 1;
        power["lastCommand"] = tool + (forced ? " -f" : "");
    });
    SignalConsole();
    return 0;
}

}  // namespace

SIM_TOOL({"/sbin/reboot", "/sbin/poweroff"}, &PowerMain);

}  // namespace Sim::Tools
