// The keyboard dialog: Space moves the one choice, Enter applies the chosen
// layout (the current one again without Space), and a failing host changes
// nothing.
#include <string>

#include "tests/admin/admin_support.h"

using namespace AdminTest;

namespace {

constexpr char kEntry[] = "Configure Keyboard";
constexpr char kHelp[] = "If you are having difficulty using your keyboard";

constexpr char kLayout[] = "/systemInfo/keyboard/layout";
constexpr char kLoaded[] = "/systemInfo/keyboard/loadedMappings";

// <Enter>: the dialog applies and closes.
bool Apply(ConsoleSession& console) {
    console.key(Key::Enter);
    return console.waitForTextGone(kHelp);
}

// One walk: Enter without Space applies the current layout again, Space moves
// the one choice, Esc applies nothing, a failing host changes nothing, and
// Enter applies the choice.
TEST(Keyboard, SpaceMovesTheOneChoiceAndEnterAppliesIt) {
    SimRoot root;
    root.editState([](Json& s) { s["systemInfo"]["keyboard"]["loadedMappings"] = "Belgian"; });
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(OpenEntry(console, kEntry, kHelp));
    ASSERT_TRUE(console.find("(o) US Default"));
    console.key(Key::Up);
    ASSERT_TRUE(Apply(console));
    EXPECT_TRUE(root.waitForLogLine("Keyboard Layout changed to US Default"));
    EXPECT_EQ(StateText(root, kLoaded), "US Default");

    ASSERT_TRUE(WaitSettled(console, "<Esc> Log Out"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, kHelp));
    console.key(Key::Down);
    ASSERT_TRUE(console.waitFor(
        [&] { return CaretRow(console) < 0 && console.find("( ) US Dvorak"); }, "US Dvorak"));
    console.key(" ");
    ASSERT_TRUE(console.waitForText("(o) US Dvorak"));
    EXPECT_TRUE(console.find("( ) US Default"));
    console.key(Key::Down);
    console.key(" ");
    ASSERT_TRUE(console.waitForText("(o) Ukrainian"));
    EXPECT_TRUE(console.find("( ) US Dvorak"));
    ASSERT_TRUE(Dismiss(console, kHelp, Key::Esc));
    EXPECT_EQ(StateText(root, kLayout), "US Default");

    root.setFault("system.setKeyboardLayout", {{"exception", "keymap locked"}});
    ASSERT_TRUE(KeyThen(console, Key::Enter, kHelp));
    console.key(Key::Down);
    console.key(" ");
    ASSERT_TRUE(console.waitForText("(o) US Dvorak"));
    ASSERT_TRUE(Apply(console));
    EXPECT_TRUE(root.waitForLogLine("Setting keyboard layout failed: keymap locked"));
    EXPECT_EQ(StateText(root, kLayout), "US Default");
    EXPECT_EQ(root.logLinesWith("Keyboard Layout changed").size(), 1u);

    root.setFault("system.setKeyboardLayout", nullptr);
    ASSERT_TRUE(WaitSettled(console, "<Esc> Log Out"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, kHelp));
    console.keys({Key::Down, Key::Down, " "});
    ASSERT_TRUE(console.waitForText("(o) Ukrainian"));
    ASSERT_TRUE(Apply(console));
    EXPECT_TRUE(root.waitForLogLine("Keyboard Layout changed to Ukrainian"));
    EXPECT_EQ(StateText(root, kLayout), "Ukrainian");
    EXPECT_EQ(StateText(root, kLoaded), "Ukrainian");
}

}  // namespace
