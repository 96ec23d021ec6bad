// How the ZrkCtl implementations reach the simulated host's state store.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "store/state.h"

namespace ZrkCtl::Sim {

using Json = ::Sim::Json;

// The state as it is now, shared and read-only (no copy is made); a missing
// or unreadable state arrives as HostCtl::Lib::HostCtlException.
std::shared_ptr<const Json> Snapshot();

// The state as it is now, after the fault of the operation `name` was looked
// for in that same state (see CheckFault): one look at the store for both.
std::shared_ptr<const Json> SnapshotFor(const std::string& name);

// A change of the state as one locked step; failures as HostCtlException.
void Update(const std::function<void(Json&)>& change);

// Throws HostCtlException with the fault's "exception" text when the state
// asks the operation `name` to fail ("/faults/<name>").
void CheckFault(const std::string& name);

}  // namespace ZrkCtl::Sim
