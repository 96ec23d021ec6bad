// The two-pane window: the selection skips separators and disabled rows and
// leaves a row that is disabled under it, and <Esc> leaves only when the
// window agrees.
#include <curses.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "screen.h"
#include "ui/keys.h"
#include "ui/pane_window.h"

namespace {

using namespace Tesk;
using TeskTest::RowText;
using TeskTest::RunWithKeys;

class PaneWindowTest : public TeskTest::ScreenTest {};

// Rows "A", separator, "B" (disabled when asked), "C". Records what it was
// asked and done; <Esc> leaves after it was refused escapesRefused times.
class Sample : public PaneWindow {
public:
    explicit Sample(bool disableB = false) : PaneWindow(nullptr, "left footer") {
        setTitle("Sample");
        addRow("A");
        addRow("", false);
        b_ = addRow("B");
        addRow("C");
        if (disableB) setRowEnabled(b_, false);
    }
    using PaneWindow::selectedRow;
    using PaneWindow::selectRow;
    using PaneWindow::setRowEnabled;

    std::vector<int> described;
    std::vector<int> entered;
    int escapesRefused = 0;
    int enterCount = 0;

private:
    PaneText describe(int row) override {
        described.push_back(row);
        return {"pane of " + std::to_string(row) + " after " + std::to_string(enterCount),
                "footer " + std::to_string(row)};
    }
    void enter(int row) override {
        entered.push_back(row);
        ++enterCount;
    }
    bool otherKey(int row, int key) override { return key == 'x' && row == 3; }
    bool leave() override { return escapesRefused-- <= 0; }
    int b_ = -1;
};

TEST_F(PaneWindowTest, SelectionSkipsSeparatorsAndDisabledRows) {
    {
        Sample window;
        EXPECT_EQ(RunWithKeys(window, {KEY_DOWN, KeyEnter, KEY_DOWN, KeyEnter, KEY_DOWN, KEY_UP,
                                       KEY_UP, KEY_UP, KeyEnter, KeyEscape}),
                  0);
        EXPECT_EQ(window.entered, (std::vector<int>{2, 3, 0}));
    }
    {
        Sample window(true);
        RunWithKeys(window, {KEY_DOWN, KeyEnter, KeyEscape});
        EXPECT_EQ(window.entered, (std::vector<int>{3}));
    }
    // Disabling the selected row moves the selection to the next one that can
    // be chosen, or the one above when none follows.
    Sample window;
    window.selectRow(2);
    window.setRowEnabled(2, false);
    EXPECT_EQ(window.selectedRow(), 3);
    window.setRowEnabled(3, false);
    EXPECT_EQ(window.selectedRow(), 0);
}

TEST_F(PaneWindowTest, EscapeLeavesOnlyWhenTheWindowAgreesAndRowKeysGoToTheRow) {
    Sample window;
    window.escapesRefused = 2;
    const std::size_t before = window.described.size();
    EXPECT_EQ(RunWithKeys(window, {KeyEscape, KeyEscape, KEY_DOWN, KEY_DOWN, 'x', KeyEscape}), 0);
    // Two moves and the row's own key each describe the pane again.
    EXPECT_GE(window.described.size() - before, 4u);
    EXPECT_EQ(window.described.back(), 3);
}

}  // namespace
