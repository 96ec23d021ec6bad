// Collecting a live core of the host agent on a thread of its own while the
// agents restart. The worker only runs its command, raises the host alert and
// writes to syslog; it touches no console state and is never joined. Should
// the process end while a worker runs, the exit waits for it briefly, after
// the worker's command was told to end.
#pragma once

#include <string>

namespace Tesk {

// Starts the worker; false with the reason in *error when no thread could be
// made.
bool StartLiveCoreWorker(std::string* error);

}  // namespace Tesk
