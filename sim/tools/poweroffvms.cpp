// "/bin/powerOffVms" and "/sbin/powerOffVms" [--terminate]: powers off every
// running virtual machine ("vms"), gracefully unless told to terminate.
#include <iostream>

#include "sim/tools.h"
#include "sim/tools/toolkit.h"

namespace Sim::Tools {
namespace {

int PowerOffVmsMain(int argc, char** argv) {
    const std::string tool = ToolName(argv[0]);
    auto args = Arguments(argc, argv);
    bool terminate = false;
    for (const auto& a : args) {
        if (a != "--terminate") return Fail(tool, "unknown option " + a, 2);
        terminate = true;
    }
    Sim::Update([&](Json& state) {
        Json& vms = state["vms"];
        if (vms.is_array())
            for (auto& vm : vms)
                if (vm.is_object() && vm.value("running", false)) {
                    vm["running"] = false;
                    std::cout << (terminate ? "Terminating " : "Powering off ")
                              << vm.value("name", "?") << "\n";
                }
        Json& power = Section(state, "power");
        power["vmPowerOffs"] = power.value("vmPowerOffs", 0) + 1;
        power["lastVmPowerOff"] = terminate ? "terminate" : "graceful";
    });
    return 0;
}

}  // namespace

SIM_TOOL({"/bin/powerOffVms", "/sbin/powerOffVms"}, &PowerOffVmsMain);

}  // namespace Sim::Tools
