// A window that becomes active again looks exactly as it did at first: every
// cell of the screen (text, colours, attributes) after a dialog closes, a
// logout, and dimming and waking, in colour and in monochrome.
#include <string>

#include "tests/session/session_support.h"

using namespace SessionTest;

namespace {

// "xterm-256color" can redefine colours; "xterm" cannot, so the console draws
// in monochrome there (standout for dark panels).
class ColoursComeBack : public ::testing::TestWithParam<const char*> {
protected:
    SessionOptions options(int cols = 80, int rows = 25) const {
        SessionOptions o = LocalConsole(cols, rows);
        o.term = GetParam();
        return o;
    }
};

// Waits until the cell dims, then presses key; true once the cell looks as
// before and the screen has settled.
bool DimThenWake(ConsoleSession& console, int col, int row, std::string_view key) {
    const TeskTest::Cell before = console.cell(col, row);
    const auto same = [&] {
        const TeskTest::Cell now = console.cell(col, row);
        return now.bg == before.bg && now.fg == before.fg && now.reverse == before.reverse;
    };
    if (!console.waitFor([&] { return !same(); }, "dimmed",
                         TeskTest::Scaled(std::chrono::seconds(20))) ||
        !console.waitForQuiet())  // keys typed while it dims are dropped
        return false;
    console.key(key);
    return console.waitFor(same, "awake") && console.waitForQuiet();
}

#define EXPECT_SAME_SCREEN(before, after, console) \
    EXPECT_EQ(GridDifference(before, after, console.screen().cols()), "") << console.text()

TEST_P(ColoursComeBack, AfterTheLoginDialogClosesAndAfterALogout) {
    SimRoot root;
    ConsoleSession console(root, options());
    ASSERT_TRUE(WaitWelcome(console));
    const auto first = Grid(console);

    ASSERT_TRUE(KeyThen(console, FKey(2), "Login Name:"));
    ASSERT_TRUE(Dismiss(console, "Login Name:", Key::Esc));
    ASSERT_TRUE(WaitWelcome(console));
    EXPECT_SAME_SCREEN(first, Grid(console), console);

    ASSERT_TRUE(LogIn(console));
    console.key(Key::Esc);
    ASSERT_TRUE(root.waitForLogLine("User root logged out"));
    ASSERT_TRUE(WaitWelcome(console));
    EXPECT_SAME_SCREEN(first, Grid(console), console);
}

TEST_P(ColoursComeBack, AfterDimmingAndWaking) {
    SimRoot root;
    // The key reader's clock five times as fast: a minute without keys passes
    // in twelve seconds (room for a slow login).
    SessionOptions fast = options();
    fast.program = FAST_CLOCK_CONSOLE;
    fast.args = {"5"};
    ConsoleSession console(root, fast);
    ASSERT_TRUE(WaitWelcome(console));
    const auto welcome = Grid(console);
    ASSERT_TRUE(DimThenWake(console, 40, 20, Key::Space));  // a cell of the lower panel
    ASSERT_TRUE(WaitWelcome(console));
    EXPECT_SAME_SCREEN(welcome, Grid(console), console);

    // The menu: its panes and margins come back the same way. <Up> at the top
    // changes nothing but wakes it.
    ASSERT_TRUE(LogIn(console));
    const auto menu = Grid(console);
    ASSERT_TRUE(DimThenWake(console, 5, 22, Key::Up));  // a margin of the left pane
    EXPECT_SAME_SCREEN(menu, Grid(console), console);
}

INSTANTIATE_TEST_SUITE_P(Terminals, ColoursComeBack, ::testing::Values("xterm-256color", "xterm"),
                         [](const auto& info) {
                             return std::string(info.param) == "xterm" ? "Monochrome" : "Colour";
                         });

}  // namespace
