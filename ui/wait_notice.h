// "Please, wait ..." in a small box over the middle of the screen while the
// console waits for the host longer than a moment (a host tool that takes its
// time), and what was under the box put back when the wait ends. A progress
// dialog shows its own progress instead.
#pragma once

namespace Tesk {

// Makes the notice the platform's slow-wait notifier (Platform::
// SetSlowWaitNotifier) for the calling thread, the one that draws.
void InstallWaitNotice();

// Shows (true) or takes away (false) the notice; what the notifier calls.
// Nothing happens while curses is not running.
void ShowWaitNotice(bool waiting);

}  // namespace Tesk
