// What the screen shows instead of a window that does not fit on it: one line
// saying the terminal is too small. The hidden window never runs, so it takes
// no keys (nobody can type into a dialog they cannot see).
#pragma once

#include <memory>

#include "ui/textarea.h"
#include "ui/window.h"

namespace Tesk {

// Whether w lies wholly on the screen. Child windows always count as fitting
// (their parent decides); a top-level window that reaches past an edge
// (a dialog larger than the terminal) does not.
bool FitsOnScreen(const Window& w);

// "Terminal too small: WxH needed. <Esc>" across the middle row, over the
// window the hidden one was opened over. <Esc> or <Enter> closes it; every
// other key is dropped; run() returns 0, the result of a cancelled dialog.
class TooSmallNote : public Window {
public:
    TooSmallNote(Window* opener, int neededWidth, int neededHeight);
    Window* opener() const override { return opener_; }
    int run() override;

private:
    Window* opener_;
    std::unique_ptr<TextArea> text_;
};

}  // namespace Tesk
