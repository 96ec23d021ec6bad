#include "ui/window.h"

#include <algorithm>

#include "ui/keyreader.h"
#include "ui/palette.h"
#include "ui/too_small_note.h"

namespace Tesk {

namespace {
Window* g_current = nullptr;

int g_batchDepth = 0;

// Gives every cell of win the attribute attr (colour pair and standout),
// keeping its character and, for line-drawing cells, the alternate character
// set, and makes attr the background of what is written later. Cells that
// hold attr already are not written, and neither are the cells of the windows
// in covered (children that paint themselves right after), so a window that
// was not drawn over since its last painting costs one read of its cells.
//
// wbkgd is not enough: it recolours only the cells that still hold the old
// background exactly, and sub-windows share their cells with their parent, so
// a parent that changed background first leaves its children's empty cells
// in the parent's colours for good.
void PaintBackground(WINDOW* win, attr_t attr, const std::vector<Window*>& covered = {}) {
    if (!win) return;
    wbkgdset(win, ' ' | attr);
    const short pair = static_cast<short>(PAIR_NUMBER(attr));
    const attr_t plain = attr & ~A_COLOR;
    int cursorY = 0, cursorX = 0;
    getyx(win, cursorY, cursorX);
    const int rows = getmaxy(win);
    const std::size_t columns = static_cast<std::size_t>(std::max(0, getmaxx(win)));
    std::vector<chtype> cells(columns + 1);
    std::vector<char> skip(columns);
    for (int row = 0; row < rows; ++row) {
        std::fill(skip.begin(), skip.end(), 0);
        for (const Window* child : covered) {
            WINDOW* c = child->curses();
            if (!c) continue;
            const int top = getbegy(c) - getbegy(win), left = getbegx(c) - getbegx(win);
            if (row < top || row >= top + getmaxy(c)) continue;
            const auto from = static_cast<std::size_t>(std::max(0, left));
            const auto to =
                std::min(columns, static_cast<std::size_t>(std::max(0, left + getmaxx(c))));
            for (std::size_t column = from; column < to; ++column) skip[column] = 1;
        }
        if (std::find(skip.begin(), skip.end(), 0) == skip.end()) continue;
        mvwinchnstr(win, row, 0, cells.data(), static_cast<int>(columns));
        // Runs of cells to paint, alike in their alternate-character-set flag.
        for (std::size_t column = 0; column < columns;) {
            if (skip[column] || (cells[column] & A_ATTRIBUTES & ~A_ALTCHARSET) == attr) {
                ++column;
                continue;
            }
            const attr_t flag = cells[column] & A_ALTCHARSET;
            std::size_t end = column + 1;
            while (end < columns && !skip[end] && (cells[end] & A_ALTCHARSET) == flag) ++end;
            mvwchgat(win, row, static_cast<int>(column), static_cast<int>(end - column),
                     plain | flag, pair, nullptr);
            column = end;
        }
    }
    wmove(win, cursorY, cursorX);
}

}  // namespace

DrawBatch::DrawBatch(bool held) : held_(held) {
    ++g_batchDepth;
}

DrawBatch::~DrawBatch() {
    if (--g_batchDepth == 0 && !held_) doupdate();
}

bool DrawBatch::outermost() const {
    return g_batchDepth == 1;
}

void Show(WINDOW* win) {
    if (!win) return;
    if (g_batchDepth > 0)
        wnoutrefresh(win);
    else
        wrefresh(win);
}

Window* CurrentWindow() {
    return g_current;
}

void SetCurrentWindow(Window* w) {
    g_current = w;
}

Window::Window(int x, int y, int width, int height, int background, int foreground)
    : x_(x),
      y_(y),
      width_(width),
      height_(height),
      background_(background),
      foreground_(foreground) {
    // curses reads a side of 0 as "to the screen's edge"; an empty window has
    // no curses window at all.
    if (width > 0 && height > 0) win_ = newwin(height, width, y, x);
    PaintBackground(win_, TextAttr(background_, foreground_));
}

Window::Window(Window* parent, int x, int y, int width, int height, int background, int foreground)
    : parent_(parent),
      x_(parent ? parent->x_ + x : x),
      y_(parent ? parent->y_ + y : y),
      width_(width),
      height_(height),
      background_(background == -1 && parent ? parent->background_ : background),
      foreground_(foreground == -1 && parent ? parent->foreground_ : foreground) {
    if (parent && parent->win_ && width > 0 && height > 0)
        win_ = subwin(parent->win_, height, width, y_, x_);
    PaintBackground(win_, TextAttr(background_, foreground_));
    if (parent) parent->children_.push_back(this);
}

Window::~Window() {
    // Children are owned by whoever made them; detach them from this window.
    for (Window* child : children_) child->parent_ = nullptr;
    if (parent_) parent_->removeChild(this);
    if (g_current == this) g_current = nullptr;
    if (win_) delwin(win_);
}

void Window::removeChild(Window* child) {
    children_.erase(std::remove(children_.begin(), children_.end(), child), children_.end());
}

void Window::setActive(bool active) {
    // A focus change walks the whole window tree: its drawing goes out once.
    DrawBatch batch;
    // A child whose parent changes focus too is refreshed with the parent,
    // whose curses window holds its cells.
    const bool shown = !parent_ || !parent_->changingFocus_;
    struct Changing {
        bool& flag;
        explicit Changing(bool& f) : flag(f) { flag = true; }
        ~Changing() { flag = false; }
    } changing(changingFocus_);
    active_ = active;
    if (active) {
        PaintBackground(win_, TextAttr(background_, foreground_), children_);
        for (Window* child : children_) child->setActive(true);
        paint();
        if (shown) redraw();
        if (isTopLevel()) {
            SetCursorVisible(savedCursor_.visible);
            if (savedCursor_.visible) {
                Cursor().column = savedCursor_.column;
                Cursor().row = savedCursor_.row;
                move(savedCursor_.row, savedCursor_.column);
                refresh();
            }
        }
    } else {
        if (isTopLevel()) {
            savedCursor_ = Cursor();
            SetCursorVisible(false);
        }
        PaintBackground(win_, ColourAttr(ColourBlack, ColourDarkGrey), children_);
        for (Window* child : children_) child->setActive(false);
        paint();
        if (shown) redraw();
    }
    // Type-ahead is dropped once per focus change, not once per window.
    if (batch.outermost()) flushinp();
}

void Window::setColours(int background, int foreground) {
    background_ = background;
    foreground_ = foreground;
    if (active_) PaintBackground(win_, TextAttr(background_, foreground_));
}

void Window::redraw() {
    if (!win_) return;
    touchwin(win_);
    Show(win_);
}

void Window::print(int column, int row, const std::string& text) {
    if (!win_) return;
    mvwaddstr(win_, row, column, text.c_str());
}

int Run(Window& w) {
    // A window larger than the terminal is not drawn; it must not take keys
    // either. A note says why, and the window counts as cancelled.
    if (!FitsOnScreen(w)) {
        TooSmallNote note(w.opener(), w.width(), w.height());
        return Run(note);
    }
    g_current = nullptr;
    Window* opener = w.opener();
    if (opener) {
        opener->setActive(false);
        opener->redraw();
        w.setActive(true);
    } else {
        DrawBatch held(true);
        w.setActive(true);
    }
    g_current = &w;
    int result = 0;
    try {
        result = w.run();
    } catch (...) {
        // A time-out or the end of the console unwinds through every window.
        g_current = nullptr;
        throw;
    }
    if (opener) {
        opener->setActive(true);
        opener->redraw();
        g_current = opener;
    } else {
        g_current = nullptr;
    }
    return result;
}

}  // namespace Tesk
