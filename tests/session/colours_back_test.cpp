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
    // The console whose key reader's clock runs `scale` times as fast.
    SessionOptions fastClock(int scale) const {
        SessionOptions o = options();
        o.program = FAST_CLOCK_CONSOLE;
        o.args = {std::to_string(scale)};
        return o;
    }
};

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
    // A minute without keys passes in twelve seconds (room for a slow login).
    ConsoleSession console(root, fastClock(5));
    ASSERT_TRUE(WaitWelcome(console));
    const auto welcome = Grid(console);
    const TeskTest::Cell panel = console.cell(40, 20);  // the lower panel
    auto same = [&](const TeskTest::Cell& a, const TeskTest::Cell& b) {
        return a.bg == b.bg && a.fg == b.fg && a.reverse == b.reverse;
    };
    ASSERT_TRUE(console.waitFor([&] { return !same(console.cell(40, 20), panel); }, "dimmed",
                                TeskTest::Scaled(std::chrono::seconds(20))));
    ASSERT_TRUE(console.waitForQuiet());  // keys typed while it dims are dropped
    console.key(Key::Space);
    ASSERT_TRUE(console.waitFor([&] { return same(console.cell(40, 20), panel); }, "awake"));
    ASSERT_TRUE(WaitWelcome(console));
    EXPECT_SAME_SCREEN(welcome, Grid(console), console);

    // The menu: its panes and margins come back the same way.
    ASSERT_TRUE(LogIn(console));
    const auto menu = Grid(console);
    const TeskTest::Cell pane = console.cell(5, 22);  // a margin of the left pane
    ASSERT_TRUE(console.waitFor([&] { return !same(console.cell(5, 22), pane); }, "dimmed",
                                TeskTest::Scaled(std::chrono::seconds(20))));
    ASSERT_TRUE(console.waitForQuiet());
    console.key(Key::Up);  // already at the top: changes nothing but wakes
    ASSERT_TRUE(console.waitFor([&] { return same(console.cell(5, 22), pane); }, "awake"));
    ASSERT_TRUE(console.waitForQuiet());
    EXPECT_SAME_SCREEN(menu, Grid(console), console);
}

INSTANTIATE_TEST_SUITE_P(Terminals, ColoursComeBack, ::testing::Values("xterm-256color", "xterm"),
                         [](const auto& info) {
                             return std::string(info.param) == "xterm" ? "Monochrome" : "Colour";
                         });

}  // namespace
