// The toolkit's tests on a curses screen without a terminal
// (tests/support/curses_screen.h): a fixture that resets the process-wide
// state, helpers to read cells back and to feed keys to the key reader.
#pragma once

#include <curses.h>
#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <stdexcept>
#include <string>

#include "tests/support/curses_screen.h"
#include "ui/keyreader.h"
#include "ui/palette.h"
#include "ui/terminal.h"
#include "ui/window.h"

namespace TeskTest {

// The key reader's view of a session: only the idle timeout matters here.
class TestKeySession : public Tesk::KeySession {
public:
    int idleTimeout() const override { return timeout; }
    bool holdRestart() override { return false; }
    void cardChanged() override {}
    int timeout = 600;
};

// Opens the screen and puts the process-wide state back before each test.
class ScreenTest : public ::testing::Test {
protected:
    void SetUp() override {
        TeskTest::OpenCursesScreen();
        Tesk::SetCannotChangeColours(false);
        Tesk::SetCurrentWindow(nullptr);
        Tesk::SetKeySession(&keySession_);
        Tesk::SetHighContrastPalette(false);
        Tesk::ResetHooks();
        erase();
        refresh();
    }
    void TearDown() override {
        Tesk::ResetHooks();
        Tesk::SetKeySession(nullptr);
        Tesk::SetCannotChangeColours(false);
        Tesk::SetHighContrastPalette(false);
    }
    TestKeySession keySession_;
};

inline int Pair(int background, int foreground) {
    return Tesk::ColourPairNumber(background, foreground);
}

inline chtype Cell(WINDOW* w, int row, int column) {
    return mvwinch(w, row, column);
}
inline int PairAt(WINDOW* w, int row, int column) {
    return static_cast<int>(PAIR_NUMBER(Cell(w, row, column) & A_COLOR));
}
inline char CharAt(WINDOW* w, int row, int column) {
    return static_cast<char>(Cell(w, row, column) & A_CHARTEXT);
}
inline std::string RowText(WINDOW* w, int row, int column = 0, int count = -1) {
    if (count < 0) count = getmaxx(w) - column;
    std::string text;
    for (int i = 0; i < count; ++i) text.push_back(CharAt(w, row, column + i));
    return text;
}
// The wide character of a cell, for the scroll bar's glyphs.
inline wchar_t WideAt(WINDOW* w, int row, int column) {
    cchar_t cell;
    if (mvwin_wch(w, row, column, &cell) == ERR) return 0;
    wchar_t text[CCHARW_MAX + 1] = {};
    attr_t attrs;
    short pair;
    getcchar(&cell, text, &attrs, &pair, nullptr);
    return text[0];
}

// Feeds the key reader a fixed sequence of input results; a clock that moves
// step seconds on every reading. Running out of keys fails the test instead
// of blocking.
class FakeInput {
public:
    explicit FakeInput(std::deque<int> keys, long step = 0) : keys_(std::move(keys)), step_(step) {
        Tesk::Hooks().now = [this] {
            timeval now{seconds_, 0};
            seconds_ += step_;
            return now;
        };
        Tesk::Hooks().wait = [this](const timeval*) {
            if (onRead) onRead();
            if (keys_.empty()) throw std::runtime_error("the test ran out of keys");
            int key = keys_.front();
            keys_.pop_front();
            ++consumed_;
            return key;
        };
    }
    ~FakeInput() { Tesk::ResetHooks(); }
    int consumed() const { return consumed_; }
    std::size_t left() const { return keys_.size(); }
    // Called at every reading, before the key is taken.
    std::function<void()> onRead;

private:
    std::deque<int> keys_;
    long step_;
    long seconds_ = 1000000;
    int consumed_ = 0;
};

// This dialog, these keys: runs the window (a dialog, a form) with the keys as
// its input and gives its result. Keys left unread fail the test, unless
// `left` says how many the window must leave (keys after the one that ends it).
template <class W>
int RunWithKeys(W& window, std::deque<int> keys, std::size_t left = 0) {
    FakeInput input(std::move(keys));
    const int result = Tesk::Run(window);
    EXPECT_EQ(input.left(), left) << "keys left unread";
    return result;
}

}  // namespace TeskTest
