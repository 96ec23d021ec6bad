// Taking every running virtual machine down before the host goes down: each
// is asked to shut down, and those still running past the time limit (or at
// once, when forced) are powered off.
#pragma once

#include <chrono>

#include "linuxhost/hypervisor.h"

namespace LinuxHost {

// Stops what runs on hypervisor: gracefully within limit, then by force (at
// once when graceful is false). Each machine's outcome is logged. True when
// nothing runs at the end. A quit request ends the wait early (the machines
// still running are then left as they are). Throws what hypervisor.Running
// throws.
bool StopAllMachines(Hypervisor& hypervisor, bool graceful, std::chrono::milliseconds limit);

// The time limit of the option "machines.shutdown_seconds".
std::chrono::milliseconds MachineShutdownLimit();

}  // namespace LinuxHost
