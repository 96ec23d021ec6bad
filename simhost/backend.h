// The simulated host as the console's host backend.
#pragma once

#include <memory>

#include "hostctl/backend.h"

namespace ZrkCtl {

// The backend over the simulated host's state in the host root. Making it
// changes nothing else: its platform hooks come from MakeSimulatedPlatform()
// (simhost/platform_nodes.h), installed by the program. On the real root "/"
// there is no state: every call fails with HostCtl::Lib::HostCtlException.
std::unique_ptr<HostCtl::Backend> MakeSimulatedBackend();

}  // namespace ZrkCtl
