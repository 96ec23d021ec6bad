#include "ui/key_loop.h"

#include "ui/keyreader.h"
#include "ui/keys.h"

namespace Tesk {

KeyResult DispatchKey(const KeyLoop& loop, int key) {
    for (const KeyHandler* step : {&loop.focused, &loop.handler, &loop.defaults}) {
        if (!*step) continue;
        if (KeyResult answer = (*step)(key)) return answer;
    }
    return KeyResult::Ignored();
}

int RunKeyLoop(Window& w, const KeyLoop& loop) {
    const bool watching = loop.watchFd >= 0 && loop.onWatch;
    const bool polling = (loop.pollMs > 0 && loop.onPoll) || watching;
    timeval lastKey = Hooks().now();
    bool dimmed = false;
    for (;;) {
        KeyResult answer = KeyResult::Ignored();
        if (polling) {
            if (watching) SetWatchedDescriptor(loop.watchFd);
            int key;
            try {
                key = ReadKeyPolling(&w, loop.allowIdleTimeout, loop.onPoll ? loop.pollMs : 0,
                                     lastKey, dimmed);
            } catch (...) {
                SetWatchedDescriptor(-1);
                throw;
            }
            SetWatchedDescriptor(-1);
            if (key == EventWatch) {
                answer = loop.onWatch();
            } else if (key == EventTimeout) {
                answer = loop.onPoll();
            } else {
                lastKey = Hooks().now();
                answer = DispatchKey(loop, key);
            }
        } else {
            answer = DispatchKey(loop, ReadKey(&w, loop.allowIdleTimeout));
        }
        if (answer.leaves()) return answer.result();
        if (answer.kind() == KeyResult::Kind::Redraw && loop.afterKey) loop.afterKey();
    }
}

}  // namespace Tesk
