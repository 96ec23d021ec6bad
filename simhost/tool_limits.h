// The time limit a simulated host tool runs under: its job's limit
// (host/time_limits.h), shortened by the state's "console.toolTimeLimitSeconds"
// when that is set, so that tests need not wait minutes for a hung tool.
#pragma once

#include "host/time_limits.h"

namespace ZrkCtl::Sim {

// Seconds; an unreadable state or value leaves the job's own limit.
int ToolLimit(Tesk::ToolJob job);

}  // namespace ZrkCtl::Sim
