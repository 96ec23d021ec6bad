#include "ui/textarea.h"

#include <algorithm>

#include "ui/keys.h"
#include "ui/palette.h"

namespace Tesk {

TextArea::TextArea(Window* parent, int x, int y, int width, int height, int background,
                   int foreground)
    : Window(parent, x, y, width, height, background, foreground),
      colours_(StandardColours()),
      variables_(EmptyHostVariables()) {}

TextArea::TextArea(Window* parent, int x, int y, int width, int height, int foreground)
    : TextArea(parent, x, y, width, height, -1, foreground) {}

void TextArea::setText(std::string_view text) {
    text_.assign(text);
    offset_ = 0;
    layout();
    draw();
}

void TextArea::appendText(std::string_view text) {
    text_.append(text);
    offset_ = 0;
    layout();
    draw();
}

void TextArea::setVariable(const std::string& name, VariableProvider provider) {
    variables_[name] = std::move(provider);
}

void TextArea::setScrollHints(bool on) {
    hints_ = on;
    offset_ = 0;
    draw();
}

int TextArea::pageHeight() const {
    if (hints_ && lines_ > height() && height() > 1) return height() - 1;
    return height();
}

bool TextArea::pageUp() {
    if (offset_ == 0) return false;
    offset_ = std::max(0, offset_ - pageHeight());
    draw();
    return true;
}

bool TextArea::pageDown() {
    if (!canScrollDown()) return false;
    offset_ += pageHeight();
    draw();
    return true;
}

bool TextArea::handleScrollKey(int key) {
    if (key == KEY_PPAGE) {
        pageUp();
        return true;
    }
    if (key == KEY_NPAGE) {
        pageDown();
        return true;
    }
    return false;
}

void TextArea::layout() {
    laidOut_ = LayoutMarkup(text_, width(), variables_);
    lines_ = CountLines(laidOut_);
}

void TextArea::paint() {
    WINDOW* win = curses();
    if (!win) return;
    werase(win);
    DrawTarget target;
    target.window = win;
    target.width = width();
    target.height = pageHeight();
    target.firstLine = offset_;
    target.active = isActive();
    target.background = background();
    target.foreground = foreground();
    target.colours = &colours_;
    DrawMarkup(target, laidOut_);
    if (pageHeight() < height()) {
        std::string hint;
        if (canScrollUp()) hint = "<Page Up>";
        if (canScrollDown()) hint += hint.empty() ? "<Page Down>" : "  <Page Down>";
        int column = std::max(0, width() - static_cast<int>(hint.size()));
        wattrset(win, isActive() ? TextAttr(background(), foreground()) : A_NORMAL);
        mvwaddnstr(win, height() - 1, column, hint.c_str(), width());
    }
    wattrset(win, A_NORMAL);
}

void TextArea::draw() {
    paint();
    Show(curses());
}

}  // namespace Tesk
