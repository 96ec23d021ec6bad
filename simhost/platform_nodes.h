// The platform hooks that the simulated host answers from its state.
#pragma once

#include <memory>

#include "platform/host_platform.h"

namespace ZrkCtl {

// The simulated backend's platform hooks. Both read the system-information
// nodes from the state ("/system", "/bootOption"; the faults
// "zsi.systemVersion" and "zsi.bootOption" make a read fail) and answer the
// event service's start-up check (the fault "noxUserLib.init" with its
// "errorCode"). On a simulated root (TESK_ROOT other than "/") the rest is
// the root's (Tesk::Platform::HostRootPlatform: its own logs, PAM only
// through pam_wrapper) and the virtual-terminal switch records the terminal
// in "/console/activeVt". On the real root "/" the rest is the machine's own.
std::unique_ptr<Tesk::Platform::HostPlatform> MakeSimulatedPlatform();

}  // namespace ZrkCtl
