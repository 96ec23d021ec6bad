// A management network that fails its checks after it was applied, through
// the real console: the count puts the old VLAN back and checks it again,
// and a console killed during the count leaves the old host after the next
// start. The count's end is the record's deadline in the host's state, which
// the test moves instead of waiting out the minute.
#include <signal.h>

#include <chrono>
#include <string>

#include "tests/network/window_support.h"

using namespace std::chrono_literals;

namespace {

namespace Key = TeskTest::Key;
using namespace NetworkTest;

constexpr char kVlanId[] = "/network/standardSwitches/0/portGroups/0/vlanId";

// From the menu: VLAN 77 (no segment carries it on the default host) applied
// with Y, up to the question after the failed gateway check.
bool ApplyWrongVlan(ConsoleSession& console) {
    if (!OpenWindow(console) || !OpenSelected(console, "VLAN (optional)", "VLAN ID (1-4094"))
        return false;
    console.type("77");
    if (!console.waitForText("[ 77") || !Close(console, Key::Enter, "VLAN ID (1-4094"))
        return false;
    console.key(Key::Esc);
    if (!WaitSettled(console, "Apply changes and restart management network?")) return false;
    console.key("y");
    return console.waitForText("Management Network: Check Failed", TeskTest::Scaled(30s)) &&
           WaitSettled(console, "<R> Revert");
}

TEST(SafeApply, AWrongVlanComesBackWhenTheCountEnds) {
    SimRoot root("default");
    ConsoleSession console(root, Console());
    ASSERT_TRUE(ApplyWrongVlan(console));
    EXPECT_TRUE(console.find("\"Default gateway 192.168.10.1 answers\" failed")) << console.dump();
    EXPECT_EQ(root.stateValue(kVlanId), Json(77));

    // The count ends.
    root.editState([](Json& s) { s["pendingChange"]["revertAt"] = 1; });
    ASSERT_TRUE(console.waitForText("Checking Previous Management Network"));
    ASSERT_TRUE(console.waitForText("Done.", TeskTest::Scaled(30s)));
    EXPECT_FALSE(console.find("Failed.")) << console.dump();
    EXPECT_EQ(root.stateValue(kVlanId), Json(0));
    EXPECT_FALSE(root.stateValue("/pendingChange"));
    EXPECT_TRUE(root.hasLogLine("Management network reverted: the check"));
    EXPECT_FALSE(root.logLinesWith("tesk.network.revert", "/var/log/audit.log").empty());
    EXPECT_FALSE(root.logLinesWith("nox.user.tesk.network.reverted", "/var/log/noxd.log").empty());
    console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(console, "<Esc> Log Out"));
}

TEST(SafeApply, AConsoleKilledDuringTheCountLeavesTheOldHostAfterTheNextStart) {
    SimRoot root("default");
    {
        ConsoleSession console(root, Console());
        ASSERT_TRUE(ApplyWrongVlan(console));
        EXPECT_EQ(root.stateValue(kVlanId), Json(77));
        console.signal(SIGKILL);
        console.waitExit();
    }
    ConsoleSession next(root, Console());
    ASSERT_TRUE(WaitWelcome(next));
    EXPECT_TRUE(root.waitForLogLine("Put back the unfinished management network change"));
    EXPECT_EQ(root.stateValue(kVlanId), Json(0));
    EXPECT_FALSE(root.stateValue("/pendingChange"));
    EXPECT_TRUE(root.hasLogLine("Management network reverted: the console ended"));
}

}  // namespace
