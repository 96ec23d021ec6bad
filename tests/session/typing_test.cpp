// Typing into the login dialog as a user sees it: the caret stands where
// typing goes, UTF-8 characters arrive whole and reach PAM as typed, and the
// selected row is highlighted across its whole width.
#include <source_location>
#include <string>
#include <vector>

#include "tests/session/session_support.h"

using namespace SessionTest;

namespace {

// "ü€" and a password with letters beyond ASCII.
const std::string kUEuro = "\xC3\xBC\xE2\x82\xAC";
const std::string kUtf8Password = "p\xC3\xA4sswort\xE2\x82\xAC";  // "pässwort€"

TEST(Typing, Utf8CharactersReachTheFieldAndPam) {
    SimRoot root;
    root.writeFile("/etc/simhost/users",
                   "root:" + TeskTest::PasswordHash(kUtf8Password) + ":success\n");
    ConsoleSession console(root, RemoteShell());
    ASSERT_TRUE(WaitWelcome(console));
    ASSERT_TRUE(KeyThen(console, FKey(2), "Login Name:"));
    // The fresh login field is replaced by the first character typed.
    console.type("x");
    console.type(kUEuro);
    console.type("y");
    ASSERT_TRUE(console.waitForText("[ x" + kUEuro + "y "));

    // Back to "root", then the UTF-8 password (shown as one star per
    // character) through PAM to the simulated host's users.
    console.keys({Key::Backspace, Key::Backspace, Key::Backspace, Key::Backspace});
    console.type("root");
    console.key(Key::Enter);
    console.type(kUtf8Password);
    ASSERT_TRUE(console.waitForText("[ *********  "));
    console.key(Key::Enter);
    EXPECT_TRUE(root.waitForLogLine("User root logged in"));
    EXPECT_TRUE(console.waitForText("System Customization"));
}

// Waits until the terminal's caret is at (col, row) and shown.
bool CaretAt(ConsoleSession& console, int col, int row,
             std::source_location where = std::source_location::current()) {
    return console.waitFor(
        [&] {
            const auto& screen = console.screen();
            return screen.cursorVisible() && screen.cursor() == TeskTest::Position{col, row};
        },
        "the caret at column " + std::to_string(col) + ", row " + std::to_string(row),
        TeskTest::DefaultTimeout(), where);
}

TEST(Typing, TheCaretStandsWhereTypingGoes) {
    SimRoot root;
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(WaitWelcome(console));
    EXPECT_FALSE(console.screen().cursorVisible());
    ASSERT_TRUE(KeyThen(console, FKey(2), "Login Name:"));
    auto field = console.find("[ root");
    ASSERT_TRUE(field);
    const int first = field->col + 2, row = field->row;
    // At the caret of the focused field: the start of "root", then where
    // End, Left and typing put it.
    EXPECT_TRUE(CaretAt(console, first, row));
    console.key(Key::End);
    EXPECT_TRUE(CaretAt(console, first + 4, row));
    console.key(Key::Left);
    EXPECT_TRUE(CaretAt(console, first + 3, row));
    console.type("X");
    ASSERT_TRUE(console.waitForText("[ rooXt"));
    EXPECT_TRUE(CaretAt(console, first + 4, row));

    // The keyboard label takes no input: no caret.
    console.key(Key::Up);
    EXPECT_TRUE(console.waitFor([&] { return !console.screen().cursorVisible(); }, "no caret"));
    console.key(Key::Down);
    EXPECT_TRUE(console.waitFor([&] { return console.screen().cursorVisible(); }, "a caret"));

    // The password field, and again after a failed login's message.
    console.key(Key::Enter);
    auto password = console.find("Password:");
    ASSERT_TRUE(password);
    EXPECT_TRUE(CaretAt(console, first, password->row));
    console.type("wrong");
    EXPECT_TRUE(CaretAt(console, first + 5, password->row));
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Invalid login or password."));
    EXPECT_FALSE(console.screen().cursorVisible());
    ASSERT_TRUE(Dismiss(console, "Invalid login or password."));
    EXPECT_TRUE(CaretAt(console, first, password->row));
}

TEST(SelectedRow, HighlightedAcrossTheWholeRowFirstAndAfterMoving) {
    SimRoot root;
    ConsoleSession console(root, RemoteShell(80, 25));
    ASSERT_TRUE(LogIn(console));
    // The columns of a row from..to drawn on the background of the cell at.
    auto highlighted = [&](TeskTest::Position at, int from, int to) {
        const TeskTest::Colour selected = console.cell(at.col, at.row).bg;
        std::vector<int> columns;
        for (int col = from; col <= to; ++col)
            if (console.cell(col, at.row).bg == selected) columns.push_back(col);
        return columns;
    };
    // The first entry, in the menu (not the pane's heading).
    ASSERT_NE(console.row(3).find("Configure Password"), std::string::npos);
    const TeskTest::Position entry{2, 3};
    // The menu's rows span columns 1 to 37 of its 40-column pane.
    std::vector<int> whole;
    for (int col = 1; col <= 37; ++col) whole.push_back(col);
    EXPECT_EQ(highlighted(entry, 0, 39), whole);
    const std::string heading = console.row(1);
    console.key(Key::Down);
    ASSERT_TRUE(console.waitFor([&] { return console.row(1) != heading; }, "next entry"));
    console.key(Key::Up);
    ASSERT_TRUE(console.waitFor([&] { return console.row(1) == heading; }, "first entry"));
    ASSERT_TRUE(console.waitForQuiet());
    EXPECT_EQ(highlighted(entry, 0, 39), whole);

    // The login dialog's rows: from the column before the label to the one
    // before the scroll bar (the field inside has a highlight of its own).
    console.key(Key::Esc);
    ASSERT_TRUE(WaitWelcome(console));
    ASSERT_TRUE(KeyThen(console, FKey(2), "Login Name:"));
    auto label = console.find("Login Name:");
    ASSERT_TRUE(label);
    const auto row = highlighted(*label, label->col - 2, label->col + 55);  // inside the box
    ASSERT_FALSE(row.empty());
    EXPECT_EQ(row.front(), label->col - 1);
    EXPECT_EQ(row.back(), label->col + 53);
}

}  // namespace
