// The host backend of a run: one of the backends built into the program,
// named by TESK_BACKEND or else following TESK_ROOT, installed with its
// platform hooks before anything else happens.
#pragma once

#include <memory>
#include <string>

namespace HostCtl {
class Backend;
}
namespace Tesk::Platform {
class HostPlatform;
}

namespace Tesk {

// A host backend the program knows by name: how to make it and its platform
// hooks; both null when it is not built into this program.
struct HostBackendEntry {
    const char* name;
    std::unique_ptr<HostCtl::Backend> (*makeBackend)();
    std::unique_ptr<Platform::HostPlatform> (*makePlatform)();
};

// The backend a choice came to, or why there is none (error).
struct BackendChoice {
    const HostBackendEntry* entry = nullptr;
    std::string error;
};

// requested: TESK_BACKEND (null or empty: not set). Without it a simulated
// root (TESK_ROOT other than "/") means the simulated host, the real root the
// machine's own backend. A name that is unknown, or known but not built,
// gives an error that says which names there are.
BackendChoice ChooseBackend(const char* requested, bool simulatedRoot);

// Start-up's first step: chooses from the environment, installs the platform
// hooks and the backend (HostCtl::SetBackend). When no backend can be
// chosen, writes why to stderr and to syslog (a simulated root's own log
// when TESK_ROOT names one) and returns false: the program ends with status 1.
bool InstallHostBackend();

}  // namespace Tesk
