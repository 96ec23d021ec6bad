// Item lists: selection and scrolling, the scroll bar, and long values
// scrolling inside an input field.
#include <curses.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "screen.h"
#include "ui/items.h"
#include "ui/keys.h"

namespace {

using namespace Tesk;
using TeskTest::Pair;
using TeskTest::PairAt;
using TeskTest::RowText;
using TeskTest::WideAt;

// A list of four rows in an area of its own.
class ItemListTest : public TeskTest::ScreenTest {
protected:
    void SetUp() override {
        ScreenTest::SetUp();
        area_ = std::make_unique<Window>(0, 0, 30, 4, ColourYellow, ColourDarkGrey);
        list_ = std::make_unique<ItemList>(area_.get(), 0, 0, 30, 4);
    }
    std::unique_ptr<Window> area_;
    std::unique_ptr<ItemList> list_;
};

TEST_F(ItemListTest, ScrollBarThumbFollowsTheTopRow) {
    ItemList& list = *list_;
    for (int i = 0; i < 10; ++i) list.emplace<LabelItem>("item " + std::to_string(i), true);
    list.draw();
    WINDOW* bar = list.scrollColumn().curses();
    EXPECT_TRUE(list.hasScrollBar());
    EXPECT_EQ(WideAt(bar, 0, 0), L'█');
    EXPECT_EQ(WideAt(bar, 1, 0), L'▓');
    EXPECT_EQ(WideAt(bar, 3, 0), L'▓');
    for (int i = 0; i < 9; ++i) list.moveDown();
    list.draw();
    EXPECT_EQ(list.top(), 6);
    EXPECT_EQ(list.selectedRow(), 3);
    EXPECT_EQ(WideAt(bar, 3, 0), L'█');
    EXPECT_EQ(WideAt(bar, 0, 0), L'▓');
    EXPECT_EQ(RowText(list.listArea().curses(), 3, 1, 6), "item 9");
}

TEST_F(ItemListTest, SelectionSkipsLabelsAndDisabledItemsAndStopsAtTheEnds) {
    ItemList& list = *list_;
    list.emplace<LabelItem>("heading");
    list.emplace<CheckItem>("a", false);
    list.emplace<LabelItem>("");
    list.emplace<CheckItem>("b", false).setEnabled(false);
    list.emplace<CheckItem>("c", false);
    list.draw();
    EXPECT_EQ(list.selectedIndex(), 1);
    EXPECT_EQ(list.selectedOrdinal(), 0);
    EXPECT_TRUE(list.moveDown());
    EXPECT_EQ(list.selectedIndex(), 4);
    // The ordinal counts the disabled item the selection passed over.
    EXPECT_EQ(list.selectedOrdinal(), 2);
    EXPECT_EQ(list.top(), 1);
    EXPECT_FALSE(list.moveDown());
    EXPECT_EQ(list.selectedIndex(), 4);
    EXPECT_TRUE(list.moveUp());
    EXPECT_EQ(list.selectedIndex(), 1);
    EXPECT_EQ(list.selectedRow(), 0);
    EXPECT_FALSE(list.moveUp());
    list.selectByOrdinal(2);
    EXPECT_EQ(list.selectedIndex(), 4);
    // Disabled items are drawn in dark-grey.
    list.draw();
    EXPECT_EQ(list.at(3).foreground(), ColourDarkGrey);
    list.at(3).setEnabled(true);
    EXPECT_EQ(list.at(3).foreground(), ColourBlack);
}

}  // namespace
