#include "ui/key_loop.h"

#include "ui/keyreader.h"

namespace Tesk {

KeyResult DispatchKey(const KeyLoop& loop, int key) {
    for (const KeyHandler* step : {&loop.focused, &loop.handler, &loop.defaults}) {
        if (!*step) continue;
        if (KeyResult answer = (*step)(key)) return answer;
    }
    return KeyResult::Ignored();
}

int RunKeyLoop(Window& w, const KeyLoop& loop) {
    for (;;) {
        const KeyResult answer = DispatchKey(loop, ReadKey(&w, loop.allowIdleTimeout));
        if (answer.leaves()) return answer.result();
        if (answer.kind() == KeyResult::Kind::Redraw && loop.afterKey) loop.afterKey();
    }
}

}  // namespace Tesk
