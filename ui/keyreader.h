// The key reader: keyboard, wake-up pipe from the signal thread, dimming after
// a minute without keys and the idle timeout. The one place the console waits.
#pragma once

#include <sys/time.h>

#include <functional>
#include <optional>
#include <string>

namespace Tesk {

class Window;

// Thrown by ReadKey when a logged-in user has been idle too long; the session
// is the only place that catches it.
class TeskTimeout {};

// Thrown when the console is to end: a quit signal, a terminal resize, a
// restart request nobody holds back, a smart card taken out of a card-bound
// session. It unwinds every window (so every destructor runs) to the top,
// which ends the process with `status`. Not a std::exception on purpose: no
// screen's error handling may swallow it.
struct ExitRequest {
    int status = 0;
};

// What the key reader asks of whoever runs the session. The session object
// installs itself while the console runs; without one there is no idle
// timeout, restart requests end the console at once and card notifications
// go to the current window only.
class KeySession {
public:
    virtual ~KeySession() = default;
    // Seconds a logged-in user may stay idle; 0 disables, below 60 acts as 60.
    virtual int idleTimeout() const = 0;
    // A restart request (SIGUSR2) arrived. True: the session remembers it and
    // the console goes on; false: the console ends now.
    virtual bool holdRestart() = 0;
    // A smart card was inserted or removed (after the current window heard of
    // it). May throw ExitRequest.
    virtual void cardChanged() = 0;
};
void SetKeySession(KeySession* session);

// Creates the wake-up pipe and the signal thread; blocks the signals it waits
// for (HUP, INT, QUIT, TERM, USR1, USR2, WINCH, and the job-control signals
// TSTP, TTIN, TTOU, which it drops) in the calling thread first. pipe() or
// thread failure: logged, exit status 1.
void StartSignalHandling();

// Makes sure a quit signal ends the process even when the console cannot end
// by itself: when the terminal takes no output for half a second after it
// (a write to it would block for good), or after four seconds whatever holds
// the console, the signal thread puts the found terminal settings back and
// ends the process with status 0, as a kill would (no logout records, the pid
// file stays). The console turns this on at start-up; without it a quit only
// wakes the key reader.
void EndStuckQuits();

// Waits for a key on the input descriptor or a byte on the wake-up pipe,
// with an optional limit; a key curses already holds is returned at once. Returns a key (>= 0;
// characters beyond ASCII as CharKey(code point), ui/keys.h) or an InputEvent.
int WaitForInput(const timeval* limit);

// Reads a key for window w (which dims after 60 s and wakes on the next key).
// Throws TeskTimeout when allowIdleTimeout is set and the idle timeout passed,
// ExitRequest on quit, resize and (unless the session holds it) restart
// events.
int ReadKey(Window* w, bool allowIdleTimeout);

// The descriptor the input wait also watches (-1: none); when it is readable
// the wait returns EventWatch, which ReadKeyPolling hands to its caller. The
// key loop sets it only around its own wait.
void SetWatchedDescriptor(int fd);

// ReadKey that also returns EventTimeout when no key came within pollMs
// milliseconds (0: never), so the caller can look at something between keys.
// Dimming and the idle timeout count from `since` (the last key), not from
// each poll; `dimmed` carries whether w is dimmed from one poll to the next
// (start with false; a key wakes w and clears it).
int ReadKeyPolling(Window* w, bool allowIdleTimeout, int pollMs, const timeval& since,
                   bool& dimmed);

// What the key reader uses for the time and for waiting. The shipped values
// are the monotonic clock and WaitForInput; tests replace them to drive dimming and
// the idle timeout without waiting real minutes.
struct KeyReaderHooks {
    std::function<timeval()> now;
    std::function<int(const timeval* limit)> wait;
};
KeyReaderHooks& Hooks();
void ResetHooks();

// Tests only: the descriptor read for keys (0 unless set) and the pipe's
// write end, to inject wake-up bytes.
void SetInputDescriptorForTesting(int fd);
int WakeupPipeWriteEndForTesting();

}  // namespace Tesk
