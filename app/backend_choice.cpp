#include "app/backend_choice.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "hostctl/backend.h"
#include "platform/host_platform.h"
#include "platform/host_root_platform.h"
#include "platform/hostroot.h"
#include "platform/syslog.h"

#ifdef TESK_BACKEND_SIMULATED
#include "simhost/backend.h"
#include "simhost/platform_nodes.h"
#define TESK_SIMULATED_MAKERS &ZrkCtl::MakeSimulatedBackend, &ZrkCtl::MakeSimulatedPlatform
#else
#define TESK_SIMULATED_MAKERS nullptr, nullptr
#endif
#ifdef TESK_BACKEND_LINUX
#include "linuxhost/backend.h"
#define TESK_LINUX_MAKERS &LinuxHost::MakeLinuxBackend, &LinuxHost::MakeLinuxPlatform
#else
#define TESK_LINUX_MAKERS nullptr, nullptr
#endif

namespace Tesk {
namespace {

// Every backend by name, one line each; a CMake option (TESK_BACKEND_<NAME>)
// builds it in.
const HostBackendEntry kBackends[] = {
    {"simulated", TESK_SIMULATED_MAKERS},
    {"linux", TESK_LINUX_MAKERS},
};

// The backend of the machine the console runs on, when neither TESK_BACKEND
// nor TESK_ROOT names one.
constexpr const char kMachineBackend[] = "linux";

// The backend of a simulated host root.
constexpr const char kSimulatedRootBackend[] = "simulated";

bool Built(const HostBackendEntry& entry) {
    return entry.makeBackend != nullptr && entry.makePlatform != nullptr;
}

// "simulated, linux": the names of every backend, or of the built ones.
std::string Names(bool builtOnly) {
    std::string names;
    for (const auto& entry : kBackends) {
        if (builtOnly && !Built(entry)) continue;
        if (!names.empty()) names += ", ";
        names += entry.name;
    }
    return names.empty() ? "none" : names;
}

}  // namespace

BackendChoice ChooseBackend(const char* requested, bool simulatedRoot) {
    const bool named = requested != nullptr && *requested != '\0';
    const std::string name =
        named ? requested : (simulatedRoot ? kSimulatedRootBackend : kMachineBackend);
    for (const auto& entry : kBackends) {
        if (name != entry.name) continue;
        if (Built(entry)) return {&entry, {}};
        return {nullptr, "Host backend \"" + name +
                             "\" is not built into this program (built: " + Names(true) + ")"};
    }
    return {nullptr,
            "Unknown host backend \"" + name + "\" in TESK_BACKEND (known: " + Names(false) + ")"};
}

bool InstallHostBackend() {
    const bool simulatedRoot = Platform::IsSimulatedRoot();
    const BackendChoice choice = ChooseBackend(std::getenv("TESK_BACKEND"), simulatedRoot);
    if (choice.entry == nullptr) {
        // Not a line of a simulated root may reach the machine's system log.
        if (simulatedRoot)
            Platform::InstallHostPlatform(std::make_unique<Platform::HostRootPlatform>());
        std::fprintf(stderr, "TESK: %s\n", choice.error.c_str());
        Platform::OpenSyslog("TESK");
        Platform::Log(LOG_ERR, "%s", choice.error.c_str());
        return false;
    }
    Platform::InstallHostPlatform(choice.entry->makePlatform());
    HostCtl::SetBackend(choice.entry->makeBackend());
    return true;
}

}  // namespace Tesk
