// Windows and dialogs: geometry and colours read back from the screen, the
// modal run with its current-window bookkeeping, and the idle timeout.
#include <curses.h>
#include <gtest/gtest.h>

#include <functional>

#include "screen.h"
#include "ui/dialog.h"
#include "ui/footers.h"
#include "ui/keys.h"

namespace {

using namespace Tesk;
using TeskTest::FakeInput;
using TeskTest::Pair;
using TeskTest::PairAt;
using TeskTest::RowText;
using TeskTest::RunWithKeys;

class WindowTest : public TeskTest::ScreenTest {};

// A dialog whose run() is given by the test.
class ProbeDialog : public Dialog {
public:
    ProbeDialog(Window* opener, int width, int height, int upper, std::function<int()> body)
        : Dialog(opener, width, height, upper), body_(std::move(body)) {}
    int run() override { return body_(); }

private:
    std::function<int()> body_;
};

TEST_F(WindowTest, DialogBandsAndAreasHaveTheirPlacesAndColours) {
    ProbeDialog d(nullptr, 60, 16, 9, [] { return 0; });
    d.setActive(true);
    d.setTitle("Title");
    d.setBody("Body text");
    d.setFooter(Footer::kOkCancel);
    EXPECT_EQ(d.x(), (COLS - 60) / 2);
    EXPECT_EQ(d.y(), (LINES - 16) / 2);
    WINDOW* w = d.curses();
    // Title at (3, 1) white, body at (3, 3) light-grey, both on dark-grey.
    EXPECT_EQ(RowText(w, 1, 3, 5), "Title");
    EXPECT_EQ(PairAt(w, 1, 3), Pair(ColourDarkGrey, ColourWhite));
    EXPECT_EQ(RowText(w, 3, 3, 9), "Body text");
    EXPECT_EQ(PairAt(w, 3, 3), Pair(ColourDarkGrey, ColourLightGrey));
    EXPECT_EQ(PairAt(w, 2, 30), Pair(ColourDarkGrey, ColourWhite));
    // The lower band is yellow; the footer sits on its second-to-last row,
    // keys in black and actions in dark-grey, right-aligned.
    EXPECT_EQ(PairAt(w, 9, 30), Pair(ColourYellow, ColourWhite));
    const int footerRow = 9 + 7 - 2;
    EXPECT_EQ(RowText(w, footerRow, 2, 56), std::string(32, ' ') + "<Enter> OK  <Esc> Cancel");
    EXPECT_EQ(PairAt(w, footerRow, 34), Pair(ColourYellow, ColourBlack));
    EXPECT_EQ(PairAt(w, footerRow, 42), Pair(ColourYellow, ColourDarkGrey));
    // The item area: (2, 1) in the lower band, yellow with dark-grey text.
    ASSERT_NE(d.itemArea(), nullptr);
    EXPECT_EQ(d.itemArea()->x(), d.x() + 2);
    EXPECT_EQ(d.itemArea()->y(), d.y() + 9 + 1);
    EXPECT_EQ(d.itemArea()->width(), 56);
    EXPECT_EQ(d.itemArea()->height(), 3);
    EXPECT_EQ(d.itemArea()->foreground(), ColourDarkGrey);
}

TEST_F(WindowTest, ADialogTooWideForTheScreenRunsANoteInstead) {
    // Placed at a negative column, nothing clamps it, and it has no curses
    // window. It does not run either: a note stands in for it, takes every key
    // but <Esc>, and the dialog counts as cancelled.
    bool ran = false;
    ProbeDialog wide(nullptr, COLS + 10, 10, 6, [&] {
        ran = true;
        return 7;
    });
    EXPECT_EQ(wide.x(), -5);
    wide.setTitle("x");
    EXPECT_EQ(RunWithKeys(wide, {'x', KeyTab, KEY_DOWN, KeyEscape, 'y'}, 1), 0);
    EXPECT_FALSE(ran);
}

TEST_F(WindowTest, OpenerIsDimmedWhileADialogRunsAndRestoredAfter) {
    Frame screen(nullptr, 0, 0, COLS, LINES, ColourYellow, ColourBlack);
    TextArea text(&screen, 1, 1, 20, 1, ColourBlack);
    text.setText("behind");
    screen.setActive(true);
    bool checked = false;
    ProbeDialog d(&screen, 30, 10, 6, [&] {
        EXPECT_FALSE(screen.isActive());
        EXPECT_TRUE(d.isActive());
        EXPECT_EQ(CurrentWindow(), &d);
        EXPECT_EQ(PairAt(screen.curses(), 1, 1), Pair(ColourBlack, ColourDarkGrey));
        EXPECT_EQ(PairAt(screen.curses(), 0, 0), Pair(ColourBlack, ColourDarkGrey));
        checked = true;
        return 42;
    });
    EXPECT_EQ(Tesk::Run(d), 42);
    EXPECT_TRUE(checked);
    EXPECT_TRUE(screen.isActive());
    EXPECT_EQ(CurrentWindow(), &screen);
    EXPECT_EQ(PairAt(screen.curses(), 1, 1), Pair(ColourYellow, ColourBlack));
    EXPECT_EQ(RowText(screen.curses(), 1, 1, 6), "behind");
}

}  // namespace
