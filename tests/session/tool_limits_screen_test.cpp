// A host tool that never answers holds a screen only until its time limit
// (shortened to one second by the host's setting): the screen then goes on
// as it does when the tool fails.
#include <functional>
#include <string>
#include <vector>

#include "tests/session/robustness_steps.h"

using namespace SessionTest;

namespace {

constexpr int kCols = 100;

struct HungScreen {
    const char* what;
    std::vector<const char*> hungTools;
    int kills;
    // Drives the console to the screen and checks its failure path.
    std::function<void(ConsoleSession&, const SimRoot&)> drive;
};

TEST(HungToolScreens, EachScreenGoesOnAtTheLimit) {
    const std::vector<HungScreen> screens = {
        {"custom extensions check as the menu opens",
         {"kovacli"},
         1,
         [](ConsoleSession& console, const SimRoot&) {
             ASSERT_TRUE(LogIn(console));
             // The host has one; a check that never ended offers no removal.
             EXPECT_FALSE(console.find("Remove Custom Extensions")) << console.text();
         }},
        {"init-script status",
         {"KovaShell", "SSH"},
         2,
         [](ConsoleSession& console, const SimRoot&) {
             ASSERT_TRUE(OpenEntry(console, "Troubleshooting Options", "<Esc> Exit"));
             EXPECT_TRUE(console.find("Enable Kovix Shell")) << console.text();
             EXPECT_TRUE(console.find("Enable SSH"));
         }},
    };
    for (const HungScreen& s : screens) {
        SCOPED_TRACE(s.what);
        SimRoot root;
        root.editState([](Json& state) {
            state["console"]["toolTimeLimitSeconds"] = 1;
            state["services"]["KovaShell"] = {{"running", true}, {"enabled", true}};
            state["services"]["SSH"] = {{"running", true}, {"enabled", true}};
        });
        for (const char* tool : s.hungTools) root.setFault(tool, {{"hang", true}});
        ConsoleSession console(root, LocalConsole(kCols));
        s.drive(console, root);
        EXPECT_FALSE(console.find("Please, wait"));
        EXPECT_EQ(root.logLinesWith("Killing process because 1 seconds timeout expired").size(),
                  static_cast<size_t>(s.kills))
            << root.logTail();
    }
}

}  // namespace
