// The management network from the menu to the wire: what the console applies
// is what the network test then finds. A VLAN no segment carries, applied
// through the management network window, makes the gateway ping fail; the
// right one applied again makes the test pass. (What the restores write:
// tests/recovery; what the outside network makes of it: netmodel_test.cpp.)
#include <chrono>
#include <source_location>
#include <string>
#include <string_view>
#include <vector>

#include "tests/network/window_support.h"

namespace {

namespace Key = TeskTest::Key;
using SessionTest::ConsoleSession;
using SessionTest::DialogRow;
using SessionTest::GoToEntry;
using SessionTest::Json;
using SessionTest::SimRoot;

// From the menu's "Test Management Network" entry through a run with the
// prefilled targets; true when the run is done, its result on the screen.
bool RunNetworkTest(ConsoleSession& console,
                    std::source_location where = std::source_location::current()) {
    console.key(Key::Enter, where);
    if (!SessionTest::WaitSettled(console, "Resolve Hostname", where)) return false;
    console.key(Key::Enter, where);
    return console.waitForText("Done.", TeskTest::DefaultTimeout(), where) &&
           SessionTest::WaitSettled(console, "<Enter> OK", where);
}

// The gateway, the first name server and the host name of a finished run
// all ended with outcome (an apply from the window keeps one IPv4 server, so
// the third field is empty afterwards).
void ExpectEveryStep(ConsoleSession& console, std::string_view outcome) {
    for (std::string_view step :
         {"Pinging address #1 (192.168.10.1).", "Pinging address #2 (192.168.10.2).",
          "Resolving hostname tesk-host01"}) {
        const std::string row = DialogRow(console, step);
        EXPECT_TRUE(row.starts_with(step) && row.ends_with(outcome)) << step << ": " << row << "\n"
                                                                     << console.dump();
    }
}

// Closes a finished run and waits for the menu.
bool CloseRun(ConsoleSession& console,
              std::source_location where = std::source_location::current()) {
    console.key(Key::Enter, where);
    return console.waitForTextGone("Testing Management Network", TeskTest::DefaultTimeout(),
                                   where) &&
           SessionTest::WaitSettled(console, "<Enter> Run Test", where);
}

// Leaves the management network window with <Esc>, applies with Y (with
// keep, a change whose checks fail is kept with <K>) and waits for the menu
// and for the given number of applies in the log.
bool LeaveAndApply(ConsoleSession& console, SimRoot& root, std::size_t applies, bool keep = false,
                   std::source_location where = std::source_location::current()) {
    console.key(Key::Esc, where);
    if (!SessionTest::WaitSettled(console, "Apply changes and restart management network?", where))
        return false;
    console.key("y", where);
    if (keep) {
        if (!console.waitForText("Management Network: Check Failed",
                                 TeskTest::Scaled(std::chrono::seconds(30)), where) ||
            !SessionTest::WaitSettled(console, "<R> Revert", where))
            return false;
        console.key("k", where);
    }
    if (!SessionTest::WaitSettled(console, "<Esc> Log Out", where)) return false;
    return console.waitFor(
        [&] { return root.logLinesWith("Changed vlan, restarting").size() == applies; },
        "the VLAN change in the log", TeskTest::DefaultTimeout(), where);
}

// The VLAN restart brought the management interface back.
void ExpectInterfaceUp(SimRoot& root) {
    EXPECT_EQ(root.stateValue("/network/zrkNics/0/name"), Json("zrk0"));
    EXPECT_EQ(root.stateValue("/network/zrkNics/0/enabled"), Json(true));
    EXPECT_EQ(root.stateValue("/network/zrkNics/0/up"), Json(true));
}

TEST(NetworkEndToEnd, AppliedVlanDecidesWhetherTheTestPasses) {
    using namespace NetworkTest;
    SimRoot root("default");
    ConsoleSession console(root, Console());
    constexpr char kVlan[] = "/network/standardSwitches/0/portGroups/0";
    ASSERT_EQ(root.stateValue(std::string(kVlan) + "/name"), Json("Management Network"));

    // A VLAN no segment carries.
    ASSERT_TRUE(OpenWindow(console));
    ASSERT_TRUE(OpenSelected(console, "VLAN (optional)", "VLAN ID (1-4094"));
    console.type("99");
    ASSERT_TRUE(console.waitForText("[ 99"));
    ASSERT_TRUE(Close(console, Key::Enter, "VLAN ID (1-4094"));
    EXPECT_NE(Pane(console).find("99\n"), std::string::npos) << Pane(console);
    // The gateway check fails; the change is kept and stays kept.
    ASSERT_TRUE(LeaveAndApply(console, root, 1, true));
    EXPECT_TRUE(root.waitForLogLine("Management network change kept although"));
    EXPECT_FALSE(root.stateValue("/pendingChange"));
    EXPECT_EQ(root.stateValue(std::string(kVlan) + "/vlanId"), Json(99));
    EXPECT_EQ(root.stateValue("/network/zrkNics/0/connection/portGroup"),
              Json("Management Network"));
    ExpectInterfaceUp(root);

    ASSERT_TRUE(GoToEntry(console, "Test Management Network"));
    ASSERT_TRUE(RunNetworkTest(console));
    ExpectEveryStep(console, "Failed.");
    EXPECT_FALSE(console.find("OK."));
    ASSERT_TRUE(CloseRun(console));

    // Back to untagged: the field emptied.
    ASSERT_TRUE(OpenSelected(console, "Configure Management Network", "<Esc> Exit"));
    ASSERT_TRUE(OpenSelected(console, "VLAN (optional)", "VLAN ID (1-4094"));
    console.key(Key::End);
    for (int i = 0; i < 4; ++i) console.key(Key::Backspace);
    ASSERT_TRUE(console.waitForTextGone("[ 99"));
    ASSERT_TRUE(Close(console, Key::Enter, "VLAN ID (1-4094"));
    EXPECT_NE(Pane(console).find("Not set"), std::string::npos) << Pane(console);
    ASSERT_TRUE(LeaveAndApply(console, root, 2));
    EXPECT_EQ(root.stateValue(std::string(kVlan) + "/vlanId"), Json(0));
    ExpectInterfaceUp(root);

    ASSERT_TRUE(GoToEntry(console, "Test Management Network"));
    ASSERT_TRUE(RunNetworkTest(console));
    ExpectEveryStep(console, "OK.");
    EXPECT_FALSE(console.find("Failed."));
    EXPECT_TRUE(root.hasLogLine("Command \"zrkping -c 3 192.168.10.1\" succeeded"));
    ASSERT_TRUE(CloseRun(console));
}

}  // namespace
