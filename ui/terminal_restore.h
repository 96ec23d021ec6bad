// The terminal settings the console found at start-up, and putting them back
// from wherever the console ends: its normal end, the signal thread when the
// console cannot end by itself, and a fatal signal (a crash).
#pragma once

namespace Tesk {

// Reads descriptor 1's settings as found; false when it is no terminal.
// Called once at start-up, before anything changes them.
bool SaveFoundTerminal();

// Puts the found settings back on descriptor 1 (nothing when none were
// saved). Only tcsetattr: safe in a signal handler and on any thread.
void RestoreFoundTerminal();

// Turns software flow control off on descriptor 1, so that Ctrl-S and Ctrl-Q
// are keys like any other: with it on, a Ctrl-S (even one typed before the
// console started) stops every write to the terminal until Ctrl-Q. A stopped
// output starts again at once. Called before the first byte is written.
void TurnOffFlowControl();

// Handlers for SIGSEGV, SIGBUS, SIGABRT, SIGFPE and SIGILL that put the found
// settings back and then let the signal take its course (the handler there
// was before, such as a sanitizer's, or the default action). They run on an
// alternate stack, so a stack overflow reaches them too.
void RestoreTerminalOnFatalSignals();

}  // namespace Tesk
