// The form dialog and the items' own keys: who gets a key first, what the
// defaults do, and input fields that refuse characters (a radio group's one
// choice: the keyboard dialog's screen test).
#include <curses.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "screen.h"
#include "ui/form_dialog.h"
#include "ui/input_items.h"
#include "ui/keys.h"

namespace {

using namespace Tesk;
using TeskTest::RowText;
using TeskTest::RunWithKeys;

class FormTest : public TeskTest::ScreenTest {};

// Records the keys that reach the dialog's own handler; F10 leaves with 5.
class ProbeForm : public FormDialog {
public:
    ProbeForm() : FormDialog(nullptr, 60, 16, 6) {}
    std::vector<int> seen;

protected:
    KeyResult onKey(int key) override {
        seen.push_back(key);
        return key == KEY_F(10) ? KeyResult::Leave(5) : KeyResult::Ignored();
    }
};

TEST_F(FormTest, KeysGoToTheSelectedItemThenTheDialogThenTheDefaults) {
    ProbeForm form;
    auto& name = form.items().emplace<InputItem>("Name:", "old", 20);
    auto& ssh = form.items().emplace<CheckItem>("Enable SSH", false);
    EXPECT_EQ(
        RunWithKeys(form, {'a', KEY_F(5), KEY_DOWN, ' ', 'x', KEY_DOWN, KEY_UP, KeyEnter, 'z'}, 1),
        1);
    EXPECT_EQ(name.value(), "a");
    EXPECT_TRUE(ssh.checked());
    // The dialog saw only what the items left; Enter then went to accept().
    EXPECT_EQ(form.seen, (std::vector<int>{KEY_F(5), KEY_DOWN, 'x', KEY_DOWN, KEY_UP, KeyEnter}));
    // Every change was drawn: the value typed and the check box.
    WINDOW* list = form.items().listArea().curses();
    EXPECT_NE(RowText(list, 0).find("[ a "), std::string::npos) << RowText(list, 0);
    EXPECT_EQ(RowText(list, 1, 1, 14), "[X] Enable SSH");
}

TEST_F(FormTest, NumericAndFilteredFieldsSwallowWhatTheyRefuse) {
    NumericInputItem minutes("Idle timeout", "30", 6, 4);
    for (int key : {'1', 'x', '2', '-', '3', '4', '5'}) minutes.handleKey(key);
    EXPECT_EQ(minutes.value(), "1234");
    EXPECT_EQ(minutes.handleKey('9'), KeyResult::Handled());  // full
    EXPECT_EQ(minutes.handleKey('y'), KeyResult::Handled());  // refused, yet taken
    EXPECT_EQ(minutes.handleKey(KEY_BACKSPACE), KeyResult::Redraw());
    EXPECT_EQ(minutes.handleKey('9'), KeyResult::Redraw());
    EXPECT_EQ(minutes.value(), "1239");
    // A fresh field is replaced, so a full one still takes its first key.
    minutes.setSelected(true);
    minutes.handleKey('7');
    EXPECT_EQ(minutes.value(), "7");

    FilteredInputItem ipv6("IPv6", "", 30, CharFilters::Ipv6Address);
    for (char c : std::string("fe80::1/64 zone")) ipv6.handleKey(c);
    EXPECT_EQ(ipv6.value(), "fe80::1/64e");
    // Keys that are no characters still pass on to the dialog.
    EXPECT_EQ(ipv6.handleKey(KeyEnter), KeyResult::Ignored());

    // In a form, a refused character never reaches the dialog's handler.
    ProbeForm form;
    auto& field = form.items().emplace<NumericInputItem>("Port", "", 6, 5);
    EXPECT_EQ(RunWithKeys(form, {'8', 'q', '0', KeyEnter}), 1);
    EXPECT_EQ(field.value(), "80");
    EXPECT_EQ(form.seen, (std::vector<int>{KeyEnter}));
}

}  // namespace
