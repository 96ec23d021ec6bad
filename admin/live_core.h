// Collecting a live core of the host agent on a thread of its own while the
// agents restart. The worker only runs the collection, raises the host alert
// and writes to syslog; it touches no console state and is never joined. The
// host objects it uses are made on the caller's thread and handed to it, so
// it never reaches the backend itself. Should the process end while a worker
// runs, the exit waits for it briefly, after the worker's command was told to
// end.
#pragma once

#include <string>

#include "hostctl/backend.h"

namespace Tesk {

// Starts the worker on host; false with the reason in *error when no thread
// could be made.
bool StartLiveCoreWorker(const HostCtl::Backend& host, std::string* error);

}  // namespace Tesk
