// The one key loop of every window and dialog: it reads keys through the key
// reader and hands each to the window's handlers in turn (the focused item,
// the window's own handler, the defaults of its kind) until one takes it.
#pragma once

#include <functional>

#include "ui/key_result.h"

namespace Tesk {

class Window;

using KeyHandler = std::function<KeyResult(int key)>;

struct KeyLoop {
    // Whether a logged-in user's idle timeout may end the loop (the key
    // reader then throws TeskTimeout).
    bool allowIdleTimeout = true;
    // Asked in this order; an empty one is skipped. The first answer other
    // than Ignored counts; a key nobody takes is dropped.
    KeyHandler focused = nullptr;   // the focused item
    KeyHandler handler = nullptr;   // the window's own keys
    KeyHandler defaults = nullptr;  // what every window of its kind does
    // Run after every key answered Redraw: draw the list again, describe the
    // selected entry, ...
    std::function<void()> afterKey = nullptr;
    // With pollMs > 0, onPoll is asked whenever pollMs milliseconds pass
    // without a key; its answer counts like a handler's (Leave ends the loop).
    int pollMs = 0;
    std::function<KeyResult()> onPoll = nullptr;
    // With watchFd >= 0, onWatch is asked whenever the descriptor becomes
    // readable while the loop waits for a key (not while its handlers run or
    // a window it opened waits); its answer counts like a handler's.
    int watchFd = -1;
    std::function<KeyResult()> onWatch = nullptr;
};

// One key through the handlers: the first answer that is not Ignored, or
// Ignored when nobody took the key. Runs no hook.
KeyResult DispatchKey(const KeyLoop& loop, int key);

// Reads keys for w (which dims after a minute without keys and wakes on the
// next one) and dispatches them until a handler answers Leave; returns its
// result. TeskTimeout passes through.
int RunKeyLoop(Window& w, const KeyLoop& loop);

}  // namespace Tesk
