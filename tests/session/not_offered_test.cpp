// A menu entry whose feature the host does not offer: shown greyed with the
// host's reason in its pane, and <Enter> opens nothing.
#include "tests/session/robustness_steps.h"

using namespace SessionTest;

namespace {

constexpr int kCols = 100;
constexpr char kReason[] = "This host keeps no extensions of its own.";

TEST(NotOffered, EntryIsGreyedWithTheReasonAndOpensNothing) {
    SimRoot root;
    root.editState([](Json& state) { state["notOffered"]["customExtensions"] = kReason; });
    ConsoleSession console(root, LocalConsole(kCols, 30));
    ASSERT_TRUE(LogIn(console));
    ASSERT_TRUE(SelectEntry(console, "Remove Custom Extensions", kCols)) << console.text();
    ASSERT_TRUE(console.waitForText(kReason));
    EXPECT_EQ(console.text().find("<Enter> Reset"), std::string::npos) << console.text();
    console.key(Key::Enter);
    console.waitForQuiet();
    EXPECT_EQ(console.text().find("All custom extensions will be removed."), std::string::npos)
        << console.text();
    EXPECT_NE(console.text().find(kReason), std::string::npos) << console.text();
}

}  // namespace
