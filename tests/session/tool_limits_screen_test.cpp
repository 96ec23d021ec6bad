// A host tool that never answers holds a screen only until its time limit
// (shortened to one second by the host's setting): the screen then goes on
// as it does when the tool fails.
#include <string>

#include "tests/session/session_support.h"

using namespace SessionTest;

namespace {

TEST(HungToolScreens, TheMenuOpensAtTheLimitOfItsExtensionsCheck) {
    SimRoot root;
    root.editState([](Json& state) { state["console"]["toolTimeLimitSeconds"] = 1; });
    root.setFault("kovacli", {{"hang", true}});
    ConsoleSession console(root, LocalConsole(100));
    ASSERT_TRUE(LogIn(console));
    // The host has one; a check that never ended offers no removal.
    EXPECT_FALSE(console.find("Remove Custom Extensions")) << console.text();
    EXPECT_FALSE(console.find("Please, wait"));
    EXPECT_EQ(root.logLinesWith("Killing process because 1 seconds timeout expired").size(), 1u)
        << root.logTail();
}

}  // namespace
