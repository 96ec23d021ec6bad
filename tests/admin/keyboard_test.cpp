// The keyboard dialog: Space moves the one choice, Enter applies the chosen
// layout (the current one again without Space, the first offered when the
// current one is not offered), and the login dialog's label follows.
#include <string>

#include "tests/admin/admin_support.h"

using namespace AdminTest;

namespace {

constexpr char kEntry[] = "Configure Keyboard";
constexpr char kHelp[] = "If you are having difficulty using your keyboard";

std::string Layout(const SimRoot& root) {
    return root.stateValue("/systemInfo/keyboard/layout").value_or(Json("")).get<std::string>();
}

std::string Loaded(const SimRoot& root) {
    return root.stateValue("/systemInfo/keyboard/loadedMappings")
        .value_or(Json(""))
        .get<std::string>();
}

// <Enter>: the dialog applies and closes.
bool Apply(ConsoleSession& console) {
    console.key(Key::Enter);
    return console.waitForTextGone(kHelp);
}

TEST(Keyboard, SpaceMovesTheOneChoiceAndEnterAppliesIt) {
    SimRoot root;
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(OpenEntry(console, kEntry, kHelp));
    // The current layout is chosen and selected.
    ASSERT_TRUE(console.find("(o) US Default"));
    console.key(Key::Down);
    ASSERT_TRUE(console.waitFor(
        [&] { return CaretRow(console) < 0 && console.find("( ) US Dvorak"); }, "US Dvorak"));
    console.key(" ");
    ASSERT_TRUE(console.waitForText("(o) US Dvorak"));
    EXPECT_TRUE(console.find("( ) US Default"));
    // Space again on the chosen one keeps it chosen.
    console.key(" ");
    console.key(Key::Down);
    console.key(" ");
    ASSERT_TRUE(console.waitForText("(o) Ukrainian"));
    EXPECT_TRUE(console.find("( ) US Dvorak"));
    ASSERT_TRUE(Apply(console));
    EXPECT_TRUE(root.waitForLogLine("Keyboard Layout changed to Ukrainian"));
    EXPECT_EQ(Layout(root), "Ukrainian");
    EXPECT_EQ(Loaded(root), "Ukrainian");
}

TEST(Keyboard, EnterWithoutSpaceAppliesTheCurrentLayoutAgain) {
    SimRoot root;
    root.editState([](Json& s) { s["systemInfo"]["keyboard"]["loadedMappings"] = "Belgian"; });
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(OpenEntry(console, kEntry, kHelp));
    console.key(Key::Up);
    ASSERT_TRUE(Apply(console));
    EXPECT_TRUE(root.waitForLogLine("Keyboard Layout changed to US Default"));
    EXPECT_EQ(Loaded(root), "US Default");

    // Esc applies nothing.
    console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(console, kHelp));
    console.key(Key::Down);
    console.key(" ");
    ASSERT_TRUE(console.waitForText("(o) US Dvorak"));
    ASSERT_TRUE(Dismiss(console, kHelp, Key::Esc));
    EXPECT_EQ(Layout(root), "US Default");
    EXPECT_EQ(root.logLinesWith("Keyboard Layout changed").size(), 1u);
}

TEST(Keyboard, ACurrentLayoutNotOfferedLeavesNoChoiceAndTheFirstIsApplied) {
    SimRoot root;
    root.editState([](Json& s) { s["systemInfo"]["keyboard"]["layout"] = "us default"; });
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(OpenEntry(console, kEntry, kHelp));
    EXPECT_FALSE(console.find("(o)")) << console.text();
    ASSERT_TRUE(Apply(console));
    EXPECT_TRUE(root.waitForLogLine("Keyboard Layout changed to Belgian"));
    EXPECT_EQ(Layout(root), "Belgian");
}

TEST(Keyboard, AFailingHostLeavesTheLayoutAndClaimsNothing) {
    SimRoot root;
    root.setFault("system.setKeyboardLayout", {{"exception", "keymap locked"}});
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(OpenEntry(console, kEntry, kHelp));
    console.key(Key::Down);
    console.key(" ");
    ASSERT_TRUE(console.waitForText("(o) US Dvorak"));
    ASSERT_TRUE(Apply(console));
    EXPECT_TRUE(root.waitForLogLine("Setting keyboard layout failed: keymap locked"));
    EXPECT_EQ(Layout(root), "US Default");
    EXPECT_FALSE(root.hasLogLine("Keyboard Layout changed"));
}

TEST(Keyboard, TheLoginLabelOpensTheDialogAndShowsTheNewLayout) {
    SimRoot root;
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(WaitWelcome(console));
    console.key(FKey(2));
    ASSERT_TRUE(WaitSettled(console, "Configured Keyboard (US Default)"));
    console.key(Key::Up);
    ASSERT_TRUE(console.waitFor([&] { return CaretRow(console) < 0; }, "the label selected"));
    console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(console, kHelp));
    console.key(Key::Down);
    console.key(" ");
    ASSERT_TRUE(console.waitForText("(o) US Dvorak"));
    ASSERT_TRUE(Apply(console));
    EXPECT_TRUE(console.waitForText("Configured Keyboard (US Dvorak)"));
    EXPECT_EQ(Layout(root), "US Dvorak");

    // The login goes on from the label.
    ASSERT_TRUE(console.waitForQuiet());
    console.key(Key::Down);
    console.key(Key::Enter);
    console.type(kPassword);
    console.key(Key::Enter);
    EXPECT_TRUE(root.waitForLogLine("User root logged in"));
}

}  // namespace
