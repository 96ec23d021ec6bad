// The window tree: every screen, dialog, text area and item list is a Window.
#pragma once

#include <curses.h>

#include <string>
#include <vector>

#include "ui/terminal.h"

namespace Tesk {

class Window {
public:
    // A top-level window: its own curses window of that size.
    Window(int x, int y, int width, int height, int background, int foreground);
    // A child window: a curses sub-window of the parent's at (x, y) relative to
    // the parent; a colour of -1 takes the parent's.
    Window(Window* parent, int x, int y, int width, int height, int background, int foreground);
    virtual ~Window();

    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    // Gains or loses the focus (drawn in its colours or in black on dark-grey).
    virtual void setActive(bool active);
    // The window's own modal loop; its result is the result of Run().
    virtual int run() { return 0; }
    // A smart-card notification reached the current window.
    virtual void notify() {}

    // Touches every line and refreshes.
    void redraw();
    // Moves to (column, row) and adds the whole string.
    void print(int column, int row, const std::string& text);
    // Changes the window's colours; applied at once while it is active.
    void setColours(int background, int foreground);

    WINDOW* curses() const { return win_; }
    Window* parent() const { return parent_; }
    // The window this one was opened over (frames and dialogs have one).
    virtual Window* opener() const { return nullptr; }
    bool isTopLevel() const { return parent_ == nullptr; }
    bool isActive() const { return active_; }
    int x() const { return x_; }
    int y() const { return y_; }
    int width() const { return width_; }
    int height() const { return height_; }
    int background() const { return background_; }
    int foreground() const { return foreground_; }
    const std::vector<Window*>& children() const { return children_; }

protected:
    // Removes a child from the list (its destructor calls this).
    void removeChild(Window* child);
    // Repaints the window's own content after its colours changed (focus
    // gained or lost); runs before the redraw. Text areas redraw their text.
    virtual void paint() {}

private:
    CursorState savedCursor_{};
    Window* parent_ = nullptr;
    WINDOW* win_ = nullptr;
    int x_ = 0, y_ = 0, width_ = 0, height_ = 0;
    int background_ = ColourBlack, foreground_ = ColourWhite;
    std::vector<Window*> children_;
    bool active_ = true;
    bool changingFocus_ = false;
};

// Collects what windows draw while it lives and sends it to the terminal in
// one go when the outermost batch ends, instead of one write per window. The
// key reader sends whatever is pending before it waits. A held batch sends
// nothing when it ends: its drawing goes out with the next one.
class DrawBatch {
public:
    explicit DrawBatch(bool held = false);
    ~DrawBatch();
    DrawBatch(const DrawBatch&) = delete;
    DrawBatch& operator=(const DrawBatch&) = delete;
    bool outermost() const;

private:
    bool held_;
};

// Sends a curses window's drawing to the terminal: now, or with the open
// batch.
void Show(WINDOW* win);

// The innermost window running (the one that takes keys), or none.
Window* CurrentWindow();
void SetCurrentWindow(Window* w);

// Shows w modally over its opener and returns w's run() result. The opener is
// dimmed while w runs and made current again afterwards; TeskTimeout leaves no
// window current and is passed on. A window that does not fit on the screen
// does not run: a one-line note (ui/too_small_note.h) stands in for it until
// <Esc> or <Enter>, and the result is 0. A window without an opener (the
// program's first) is not sent as a frame of its own: its run() draws it
// whole, or the key reader sends it before the first wait.
int Run(Window& w);

}  // namespace Tesk
