// The simulated host's watch: an inotify watch on the folder of its state
// file, which every change replaces by a rename.
#pragma once

#include <memory>

#include "hostctl/host_watch.h"

namespace ZrkCtl {

// Null (logged) when the watch cannot be made.
std::unique_ptr<HostCtl::HostWatch> WatchState();

}  // namespace ZrkCtl
