// Item lists: selection and scrolling, the scroll bar, the item kinds and the
// editing keys of input fields.
#include <curses.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "screen.h"
#include "ui/carousel.h"
#include "ui/items.h"
#include "ui/keys.h"

namespace {

using namespace Tesk;
using TeskTest::FakeInput;
using TeskTest::Pair;
using TeskTest::PairAt;
using TeskTest::RowText;
using TeskTest::WideAt;

class ItemListTest : public TeskTest::ScreenTest {
protected:
    void SetUp() override {
        ScreenTest::SetUp();
        area_ = std::make_unique<Window>(0, 0, 30, 4, ColourYellow, ColourDarkGrey);
    }
    void TearDown() override {
        list_.reset();
        area_.reset();
        ScreenTest::TearDown();
    }
    ItemList& makeList(int rows = 4) {
        list_ = std::make_unique<ItemList>(area_.get(), 0, 0, 30, rows);
        return *list_;
    }
    std::unique_ptr<Window> area_;
    std::unique_ptr<ItemList> list_;
};

TEST_F(ItemListTest, ShortListsHaveNoScrollBar) {
    ItemList& list = makeList();
    list.emplace<CheckItem>("one", true);
    list.emplace<RadioItem>("two", false);
    list.draw();
    EXPECT_FALSE(list.hasScrollBar());
    for (int row = 0; row < 4; ++row) EXPECT_EQ(WideAt(list.scrollColumn().curses(), row, 0), L' ');
    // Rows start at column 1 of the list; the selected row is white on black.
    EXPECT_EQ(RowText(list.listArea().curses(), 0, 0, 9), " [X] one ");
    EXPECT_EQ(RowText(list.listArea().curses(), 1, 0, 9), " ( ) two ");
    EXPECT_EQ(PairAt(list.listArea().curses(), 0, 2), Pair(ColourBlack, ColourWhite));
    EXPECT_EQ(PairAt(list.listArea().curses(), 1, 2), Pair(ColourYellow, ColourBlack));
}

TEST_F(ItemListTest, ScrollBarThumbFollowsTheTopRow) {
    ItemList& list = makeList();
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
    ItemList& list = makeList();
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

TEST_F(ItemListTest, ItemsRenderTheirState) {
    CheckItem check("Enable", false, 2);
    EXPECT_EQ(check.text(), "  [ ] Enable");
    check.toggle();
    EXPECT_EQ(check.text(), "  [X] Enable");
    RadioItem radio("DHCP", true);
    EXPECT_EQ(radio.text(), "(o) DHCP");
    radio.setChosen(false);
    EXPECT_EQ(radio.text(), "( ) DHCP");
}

TEST_F(ItemListTest, InputFieldEndsAtTheRowsEdgeWithTheCursorInside) {
    ItemList& list = makeList();
    auto& field = list.emplace<InputItem>("Name:", "abc", 10);
    list.draw();
    // 27 columns of row text: label, gap, " [ ", 10 field columns, " ]".
    const std::string text = RowText(list.listArea().curses(), 0, 1, 27);
    EXPECT_EQ(text, "Name:" + std::string(7, ' ') + " [ abc        ]");
    EXPECT_EQ(PairAt(list.listArea().curses(), 0, 21), Pair(ColourWhite, ColourBlack));
    EXPECT_TRUE(Cursor().visible);
    EXPECT_EQ(Cursor().column, 1 + field.cursorColumn());
    EXPECT_EQ(field.cursorColumn(), 15);
    // Dark highlight for dark panels.
    field.setLightHighlight(false);
    list.draw();
    EXPECT_EQ(PairAt(list.listArea().curses(), 0, 21), Pair(ColourBlack, ColourWhite));
    // Field width -1: half the row width minus one.
    InputItem half("x", "", -1);
    half.setListWidth(27);
    EXPECT_EQ(half.fieldWidth(), 12);
    SetCursorVisible(false);
}

TEST_F(ItemListTest, FreshFieldsAreReplacedByTheFirstKey) {
    InputItem field("Host", "old-name", 20);
    EXPECT_TRUE(field.fresh());
    EXPECT_TRUE(field.handleKey('x'));
    EXPECT_EQ(field.value(), "x");
    EXPECT_FALSE(field.fresh());
    field.handleKey('y');
    EXPECT_EQ(field.value(), "xy");

    // Gaining the selection makes a field fresh again; Backspace clears it.
    field.setSelected(true);
    EXPECT_TRUE(field.fresh());
    field.handleKey(KEY_BACKSPACE);
    EXPECT_EQ(field.value(), "");

    // Moving the cursor ends the fresh state, so typing inserts.
    InputItem moved("Host", "abc", 20);
    moved.handleKey(KEY_END);
    moved.handleKey('d');
    EXPECT_EQ(moved.value(), "abcd");
    InputItem deleted("Host", "abc", 20);
    deleted.handleKey(KEY_DC);
    EXPECT_EQ(deleted.value(), "");
    EXPECT_FALSE(deleted.handleKey(KEY_F(1)));
}

TEST_F(ItemListTest, EditingKeysMoveTheCursorAndEdit) {
    InputItem f("L", "abcd", 10);
    f.handleKey(KEY_HOME);
    f.handleKey(KEY_RIGHT);
    f.handleKey('X');
    EXPECT_EQ(f.value(), "aXbcd");
    EXPECT_EQ(f.cursor(), 2);
    f.handleKey(KEY_DC);
    EXPECT_EQ(f.value(), "aXcd");
    f.handleKey(8);
    EXPECT_EQ(f.value(), "acd");
    EXPECT_EQ(f.cursor(), 1);
    f.handleKey(KEY_LEFT);
    f.handleKey(KEY_LEFT);
    EXPECT_EQ(f.cursor(), 0);
    f.handleKey(KEY_BACKSPACE);
    EXPECT_EQ(f.value(), "acd");
    f.handleKey(KEY_END);
    EXPECT_EQ(f.cursor(), 3);
    f.handleKey(KEY_RIGHT);
    EXPECT_EQ(f.cursor(), 3);
    f.handleKey(KEY_DC);
    EXPECT_EQ(f.value(), "acd");
}

TEST_F(ItemListTest, LongValuesScrollInsideTheField) {
    InputItem f("L", "", 4);
    f.handleKey(KEY_HOME);
    for (char c : std::string("abcdefgh")) f.handleKey(c);
    EXPECT_EQ(f.cursor(), 8);
    EXPECT_EQ(f.viewOffset(), 5);
    EXPECT_NE(f.text().find("[ fgh  ]"), std::string::npos);
    // Left at the view's first column takes the view along.
    f.handleKey(KEY_LEFT);
    f.handleKey(KEY_LEFT);
    f.handleKey(KEY_LEFT);
    EXPECT_EQ(f.cursor(), 5);
    f.handleKey(KEY_LEFT);
    EXPECT_EQ(f.viewOffset(), 4);
    EXPECT_EQ(f.cursor(), 4);
    // Backspace past the view's left edge shows the value from its start,
    // cursor at the end.
    f.handleKey(KEY_BACKSPACE);
    EXPECT_EQ(f.value(), "abcefgh");
    EXPECT_EQ(f.viewOffset(), 0);
    EXPECT_EQ(f.cursor(), 7);
    EXPECT_NE(f.text().find("[ abce ]"), std::string::npos);
    f.handleKey(KEY_HOME);
    EXPECT_EQ(f.viewOffset(), 0);
    EXPECT_EQ(f.cursor(), 0);
}

TEST_F(ItemListTest, MaskedFieldsShowOneStarPerCharacter) {
    InputItem f("Password:", "s3cr{t", 10);
    f.setMasked(true);
    EXPECT_NE(f.text().find("[ ******     ]"), std::string::npos);
    EXPECT_EQ(f.text().find("s3"), std::string::npos);
    // Unmasked braces stay literal instead of becoming tags.
    ItemList& list = makeList();
    list.add(std::make_unique<InputItem>("Name:", "a{b", 10));
    list.selectByOrdinal(0);
    list.moveDown();
    list.draw();
    EXPECT_NE(RowText(list.listArea().curses(), 0).find("[ a{b        ]"), std::string::npos);
}

struct Entry {
    std::string name;
    std::string GetLabel() const { return "NIC: " + name; }
    std::string GetTitle() const { return "Details"; }
    std::string GetDetails() const { return "Name: " + name; }
    std::string GetFooter() const { return "{align:right}<Enter> OK{/align}  "; }
};

TEST_F(ItemListTest, CarouselCyclesThroughItsEntriesAndShowsDetails) {
    CarouselRadioItem<Entry> carousel({{"zk0"}, {"zk1"}, {"zk2"}}, true);
    EXPECT_EQ(carousel.text(), "(o) NIC: zk0");
    carousel.previous();
    EXPECT_EQ(carousel.text(), "(o) NIC: zk2");
    carousel.next();
    carousel.next();
    EXPECT_EQ(carousel.index(), 1u);
    EXPECT_EQ(carousel.text(), "(o) NIC: zk1");

    FakeInput input({'q', KeyEnter});
    Window opener(0, 0, COLS, LINES, ColourYellow, ColourBlack);
    EXPECT_EQ(carousel.showDetails(&opener), 1);
    EXPECT_EQ(input.left(), 0u);
    EXPECT_TRUE(opener.isActive());

    CarouselRadioItem<std::unique_ptr<Entry>> none({}, false);
    EXPECT_EQ(none.text(), "( ) ");
    none.next();
    EXPECT_EQ(none.showDetails(&opener), 0);
}

}  // namespace
