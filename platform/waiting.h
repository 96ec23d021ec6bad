// What a wait for a host tool learns from above without knowing the screens:
// that the console is to end (a quit signal arrived while it waits), and who
// shows the user that a wait takes a while. The signal thread and the user
// interface fill these in; the command runner and the pager's wait read them.
#pragma once

#include <chrono>
#include <functional>

namespace Tesk::Platform {

// Notes that the console is to end. The signal thread calls it for every
// quit signal (HUP, INT, QUIT, TERM). From then on QuitRequested() is true and
// QuitDescriptor() polls readable, for the rest of the process.
void NoteQuitRequest();
bool QuitRequested();
// A descriptor that becomes readable (POLLIN) once a quit was noted; -1 when
// it could not be made. Never read it: it stays readable.
int QuitDescriptor();
// Waits until fd has input to read, at most until deadline; false at the
// deadline or once a quit was noted.
bool WaitForInput(int fd, std::chrono::steady_clock::time_point deadline);
// Waits for duration, or less when a quit is noted meanwhile.
void PauseUnlessQuit(std::chrono::milliseconds duration);
// Tests only: forgets a noted quit.
void ResetQuitRequestForTesting();

// How long a wait for the host runs before the user is told about it.
inline constexpr int kSlowWaitMilliseconds = 500;

// Who shows that the console waits for the host ("Please, wait ..."): called
// with true once a wait has lasted kSlowWaitMilliseconds, and with false when
// that wait ends. The user interface installs it on its own thread; calls
// from any other thread (a worker's wait) are dropped. An empty notifier
// removes it.
using SlowWaitNotifier = std::function<void(bool waiting)>;
void SetSlowWaitNotifier(SlowWaitNotifier notifier);
void NotifySlowWait(bool waiting);

}  // namespace Tesk::Platform
