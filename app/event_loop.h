// The key reader: keyboard, wake-up pipe from the signal thread, dimming after
// a minute without keys, the idle timeout and the smart-card check.
#pragma once

#include <sys/time.h>

#include <functional>
#include <optional>
#include <string>

namespace Tesk {

class Window;

// Thrown by ReadKey when a logged-in user has been idle too long.
class TeskTimeout {};

// Creates the wake-up pipe and the signal thread; blocks the six signals in the
// calling thread first. pipe() or thread failure: logged, exit status 1.
void StartSignalHandling();

// Waits for a key on the input descriptor or a byte on the wake-up pipe,
// with an optional limit. Returns a key (>= 0) or an InputEvent.
int WaitForInput(const timeval* limit);

// Reads a key for window w (which dims after 60 s and wakes on the next key).
// Throws TeskTimeout when allowIdleTimeout is set and the idle timeout passed;
// ends the process on quit, resize and (without a session) restart events.
int ReadKey(Window* w, bool allowIdleTimeout);

// Session bookkeeping used by the login and the session.
void SetSessionActive(bool active);  // true re-reads the idle timeout
void BindSessionToCard(const std::string& userId);
const std::string& DetectedCardUserId();
// The first non-empty user id on any readable card, in slot order; empty when
// there is none.
std::string ReadCardUserId();
// Whether a present card lists userId exactly.
bool CardWithUserIdPresent(const std::string& userId);

// The smart-card check run on a card notification.
void SmartCardCheck();

// What the key reader uses for the time and for waiting. The shipped values
// are gettimeofday and WaitForInput; tests replace them to drive dimming and
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
