// The two-pane window: the selection skips separators and disabled rows and
// leaves a row that is disabled under it (<Esc> that the window refuses: the
// network window's screen test).
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

// Rows "A", separator, "B" (disabled when asked), "C"; records the rows entered.
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

    std::vector<int> entered;

private:
    PaneText describe(int row) override { return {"pane of " + std::to_string(row), ""}; }
    void enter(int row) override { entered.push_back(row); }
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

}  // namespace
