// "/sbin/factoryConfig.py --reset-only": restores the software defaults of the
// settings the simulated tools keep (lockdown off, the local shell and SSH
// stopped and disabled) and counts the reset in "factoryConfig".
#include "sim/tools.h"
#include "sim/tools/toolkit.h"

namespace Sim::Tools {
namespace {

int FactoryConfigMain(int argc, char** argv) {
    const std::string tool = ToolName(argv[0]);
    auto args = Arguments(argc, argv);
    if (args != std::vector<std::string>{"--reset-only"})
        return Fail(tool, "usage: factoryConfig.py --reset-only", 2);
    Sim::Update([&](Json& state) {
        Section(state, "lockdown")["enabled"] = false;
        Json& services = Section(state, "services");
        for (const char* name : {"KovaShell", "SSH"})
            Section(services, name).update({{"running", false}, {"enabled", false}});
        Json& record = Section(state, "factoryConfig");
        record["resets"] = record.value("resets", 0) + 1;
    });
    return 0;
}

}  // namespace

SIM_TOOL({"/sbin/factoryConfig.py"}, &FactoryConfigMain);

}  // namespace Sim::Tools
