// The simulated host as the console's host backend.
#pragma once

#include <memory>

#include "hostctl/backend.h"

namespace ZrkCtl {

// The backend over the simulated host's state in the host root. Making it
// also installs the platform's providers that read the same state (the
// system-information nodes and the event service's start-up check). On the
// real root "/" there is no state: every call fails with
// HostCtl::Lib::HostCtlException.
std::unique_ptr<HostCtl::Backend> MakeSimulatedBackend();

}  // namespace ZrkCtl
