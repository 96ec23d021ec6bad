// "/sbin/factoryConfig.py":
//   --reset-only                  the host's settings go back to the state the
//                                 root was made with (its factory image), while
//                                 the machine keeps what makes it this machine:
//                                 hardware, adapters and their MAC addresses,
//                                 accounts, virtual machines, installed software
//                                 and the simulation's own records;
//   --remove-custom-extensions    every entry of "customExtensions" is removed.
// Each run is counted in "factoryConfig".
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "platform/hostroot.h"
#include "sim/host.h"
#include "sim/tools.h"
#include "sim/tools/toolkit.h"
#include "store/state.h"

namespace Sim::Tools {
namespace {

// Kept through a reset, as they are.
constexpr const char* kIdentity[] = {
    "profile",          "system",     "hardware",     "users",
    "userAccountStore", "smartCards", "vms",          "vibs",
    "customExtensions", "console",    "power",        "factoryConfig",
    "faults",           "hostAgent",  "configBackup", "backtraces",
};

bool ReadFactoryImage(Json& image) {
    std::ifstream in(Tesk::Platform::HostPath(std::string("/") + kFactoryStatePath));
    if (!in) return false;
    std::stringstream text;
    text << in.rdbuf();
    try {
        image = Sim::ParseDocument(text.str());
    } catch (const std::runtime_error&) {
        return false;
    }
    return image.is_object();
}

int Reset(const std::string& tool) {
    Json image;
    if (!ReadFactoryImage(image)) return Fail(tool, "the factory image cannot be read");
    Sim::Update([&](Json& state) {
        Json restored = image;
        for (const char* key : kIdentity) {
            restored.erase(key);
            if (state.contains(key)) restored[key] = state[key];
        }
        // The adapters are the machine's own.
        if (state.contains("network") && state["network"].is_object() &&
            state["network"].contains("pnics"))
            Section(restored, "network")["pnics"] = state["network"]["pnics"];
        Section(restored, "lockdown")["enabled"] = false;
        Json& services = Section(restored, "services");
        for (const char* name : {"KovaShell", "SSH"})
            Section(services, name).update({{"running", false}, {"enabled", false}});
        Json& record = Section(restored, "factoryConfig");
        record["resets"] = record.value("resets", 0) + 1;
        state = std::move(restored);
    });
    return 0;
}

int RemoveCustomExtensions() {
    Sim::Update([&](Json& state) {
        state["customExtensions"] = Json::array();
        Json& record = Section(state, "factoryConfig");
        record["extensionRemovals"] = record.value("extensionRemovals", 0) + 1;
    });
    return 0;
}

int FactoryConfigMain(int argc, char** argv) {
    const std::string tool = ToolName(argv[0]);
    auto args = Arguments(argc, argv);
    if (args == std::vector<std::string>{"--reset-only"}) return Reset(tool);
    if (args == std::vector<std::string>{"--remove-custom-extensions"})
        return RemoveCustomExtensions();
    return Fail(tool, "usage: factoryConfig.py --reset-only | --remove-custom-extensions", 2);
}

}  // namespace

SIM_TOOL({"/sbin/factoryConfig.py"}, &FactoryConfigMain);

}  // namespace Sim::Tools
