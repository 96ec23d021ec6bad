// The drawing pass: text areas drawn into a curses screen and read back cell
// by cell with their colours.
#include <curses.h>
#include <gtest/gtest.h>

#include "screen.h"
#include "ui/textarea.h"

namespace {

using namespace Tesk;
using TeskTest::Pair;
using TeskTest::PairAt;
using TeskTest::RowText;

class TextAreaTest : public TeskTest::ScreenTest {
protected:
    void SetUp() override {
        ScreenTest::SetUp();
        panel_ = std::make_unique<Window>(0, 0, 40, 10, ColourYellow, ColourBlack);
    }
    std::unique_ptr<Window> panel_;
};

TEST_F(TextAreaTest, ColourTagsSwitchColoursAndUnknownNamesDrawBlack) {
    TextArea area(panel_.get(), 0, 0, 20, 1, ColourYellow, ColourDarkGrey);
    area.setText("a{color:red}b{/color}c{color:purple}d{/color}{color:black>}e");
    WINDOW* w = area.curses();
    EXPECT_EQ(PairAt(w, 0, 0), Pair(ColourYellow, ColourDarkGrey));
    EXPECT_EQ(PairAt(w, 0, 1), Pair(ColourYellow, ColourRed));
    EXPECT_EQ(PairAt(w, 0, 2), Pair(ColourYellow, ColourDarkGrey));
    EXPECT_EQ(PairAt(w, 0, 3), Pair(ColourYellow, ColourBlack));
    EXPECT_EQ(PairAt(w, 0, 4), Pair(ColourYellow, ColourBlack));
    EXPECT_EQ(RowText(w, 0, 0, 5), "abcde");

    area.setText("{bgcolor:white}{color:black}sel{/color}{/bgcolor}x{/color}y");
    EXPECT_EQ(PairAt(w, 0, 0), Pair(ColourWhite, ColourBlack));
    EXPECT_EQ(PairAt(w, 0, 3), Pair(ColourYellow, ColourDarkGrey));
    // A closing tag without its opening tag does nothing.
    EXPECT_EQ(RowText(w, 0, 0, 5), "selxy");
}

TEST_F(TextAreaTest, LongTextsScrollByPageWithHints) {
    TextArea area(panel_.get(), 0, 0, 30, 4, ColourBlack);
    area.setScrollHints(true);
    area.setText("l0\nl1\nl2\nl3\nl4\nl5\nl6");
    WINDOW* w = area.curses();
    EXPECT_EQ(area.pageHeight(), 3);
    EXPECT_EQ(RowText(w, 0, 0, 2), "l0");
    EXPECT_EQ(RowText(w, 3), std::string(19, ' ') + "<Page Down>");
    EXPECT_FALSE(area.pageUp());
    EXPECT_TRUE(area.pageDown());
    EXPECT_EQ(RowText(w, 0, 0, 2), "l3");
    EXPECT_EQ(RowText(w, 3), std::string(8, ' ') + "<Page Up>  <Page Down>");
    EXPECT_TRUE(area.handleScrollKey(KEY_NPAGE));
    EXPECT_EQ(RowText(w, 0, 0, 2), "l6");
    EXPECT_EQ(RowText(w, 1, 0, 2), "  ");
    EXPECT_EQ(RowText(w, 3), std::string(21, ' ') + "<Page Up>");
    EXPECT_FALSE(area.pageDown());
    EXPECT_TRUE(area.handleScrollKey(KEY_PPAGE));
    EXPECT_EQ(RowText(w, 0, 0, 2), "l3");
    EXPECT_FALSE(area.handleScrollKey('x'));
    // New text starts at the top again; a text that fits shows no hint.
    area.setText("short");
    EXPECT_EQ(area.scrollOffset(), 0);
    EXPECT_EQ(RowText(w, 3), std::string(30, ' '));
}

}  // namespace
