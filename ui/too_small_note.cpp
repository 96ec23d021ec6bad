#include "ui/too_small_note.h"

#include <string>

#include "ui/key_loop.h"
#include "ui/keys.h"

namespace Tesk {

bool FitsOnScreen(const Window& w) {
    if (!w.isTopLevel()) return true;
    return w.x() >= 0 && w.y() >= 0 && w.x() + w.width() <= COLS && w.y() + w.height() <= LINES;
}

TooSmallNote::TooSmallNote(Window* opener, int neededWidth, int neededHeight)
    : Window(0, LINES / 2, COLS, 1, ColourBlack, ColourWhite), opener_(opener) {
    text_ = std::make_unique<TextArea>(this, 0, 0, COLS, 1, ColourWhite);
    text_->setText("{align:center}Terminal too small: " + std::to_string(neededWidth) + "x" +
                   std::to_string(neededHeight) + " needed. <Esc>{/align}");
}

int TooSmallNote::run() {
    return RunKeyLoop(*this, {.allowIdleTimeout = true, .handler = [](int key) {
                                  if (key == KeyEscape || key == KeyEnter)
                                      return KeyResult::Leave(0);
                                  return KeyResult::Handled();
                              }});
}

}  // namespace Tesk
