// The management network from the menu to the wire: what the console applies
// or repairs is what the network test then finds. A VLAN no segment carries,
// applied through the management network window, makes the gateway ping
// fail; the right one applied again makes the test pass. On a host whose
// management interface sits on a wrongly set distributed port, the test
// fails until a restore repairs it: the standard-switch restore, or a new
// distributed port with the management VLAN, unblocked, over both uplinks.
#include <chrono>
#include <source_location>
#include <string>
#include <string_view>
#include <vector>

#include "tests/network/window_support.h"
#include "tests/recovery/recovery_support.h"

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
// all ended with outcome; with allServers the second name server too (an
// apply from the window keeps one IPv4 server, so the third field is empty
// afterwards).
void ExpectEveryStep(ConsoleSession& console, std::string_view outcome, bool allServers = false) {
    std::vector<std::string_view> steps = {"Pinging address #1 (192.168.10.1).",
                                           "Pinging address #2 (192.168.10.2).",
                                           "Resolving hostname tesk-host01"};
    if (allServers) steps.push_back("Pinging address #3 (192.168.10.3).");
    for (std::string_view step : steps) {
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

TEST(NetworkEndToEnd, StandardSwitchRestoredOffADistributedSwitchPassesTheTest) {
    using namespace RecoveryTest;
    SimRoot root("qds");
    ConsoleSession console(root, LocalConsole(kCols, kRows));
    ASSERT_TRUE(OpenRestoreWindow(console));
    Down(console, 4);
    ASSERT_TRUE(
        KeyThen(console, Key::Enter, "Move the management network onto a standard switch?"));
    ASSERT_TRUE(BackToWindow(console, FKey(11)));
    ASSERT_TRUE(root.waitForLogLine("Enabling safe mode networking"));

    const Json net = root.state()["network"];
    const Json* created = FindNamed(net["standardSwitches"], "zSwitch1");
    ASSERT_TRUE(created) << net["standardSwitches"];
    EXPECT_EQ((*created)["uplinks"], Json::array({"pnic1", "pnic2"}));
    const Json* zrk0 = FindNamed(net["zrkNics"], "zrk0");
    ASSERT_TRUE(zrk0);
    EXPECT_EQ((*zrk0)["connection"],
              Json({{"type", "portGroup"}, {"portGroup", "Management Network1"}}));

    console.key(Key::Esc);
    ASSERT_TRUE(WaitSettled(console, "<Esc> Log Out"));
    ASSERT_TRUE(GoToEntry(console, "Test Management Network"));
    ASSERT_TRUE(RunNetworkTest(console));
    ExpectEveryStep(console, "OK.", true);
    EXPECT_FALSE(console.find("Failed."));
}

// "Restore qDS" on the host whose management port is set wrong: the network
// test fails before and passes once the new port carries the management
// VLAN, unblocked, over both uplinks.
TEST(NetworkEndToEnd, DistributedPortRestoredWithTheRightVlanPassesTheTest) {
    using namespace RecoveryTest;
    SimRoot root("qds");
    ConsoleSession console(root, LocalConsole(kCols, kRows));
    ASSERT_TRUE(LogIn(console));

    ASSERT_TRUE(GoToEntry(console, "Test Management Network"));
    ASSERT_TRUE(RunNetworkTest(console));
    ExpectEveryStep(console, "Failed.", true);
    EXPECT_FALSE(console.find("OK.")) << console.dump();
    ASSERT_TRUE(CloseRun(console));

    ASSERT_TRUE(OpenSelected(console, "Network Restore Options", "Create Standard Switch"));
    ASSERT_TRUE(WaitPane(console, "<Enter> Change"));
    Down(console, 5);
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Enter the properties for new qDS host local port"));
    ASSERT_TRUE(console.waitForText("[ 30"));
    // A field that has just regained the selection is fresh: what is typed
    // replaces the port's VLAN.
    console.keys({Key::Down, Key::Up});
    ASSERT_TRUE(console.waitForQuiet(std::chrono::milliseconds(300)));
    TypeSettled(console, "10");
    ASSERT_TRUE(console.waitForText("[ 10"));
    console.keys({Key::Down, " "});
    ASSERT_TRUE(console.waitForText("[X]"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Select qDS uplinks"));
    ASSERT_TRUE(WaitSettled(console, "pnic2 (uplink2)"));
    console.key(" ");
    ASSERT_TRUE(console.waitForText("[X] pnic1"));
    console.keys({Key::Down, " "});
    ASSERT_TRUE(console.waitForText("[X] pnic2"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, "moved to port hlp-0 of qDS-Prod"));
    ASSERT_TRUE(BackToWindow(console));

    const Json net = root.state()["network"];
    const Json* qds = FindNamed(net["distributedSwitches"], "qDS-Prod");
    ASSERT_TRUE(qds) << net["distributedSwitches"];
    const Json& port = (*qds)["portSettings"]["hlp-0"];
    EXPECT_EQ(port["vlanId"], 10) << port;
    EXPECT_EQ(port["blocked"], false) << port;
    EXPECT_EQ(port["activeUplinks"], Json::array({"uplink1", "uplink2"})) << port;
    EXPECT_EQ(port["standbyUplinks"], Json::array()) << port;
    const Json* zrk0 = FindNamed(net["zrkNics"], "zrk0");
    ASSERT_TRUE(zrk0);
    EXPECT_EQ((*zrk0)["connection"],
              Json({{"type", "qdsPort"}, {"switch", "qDS-Prod"}, {"port", "hlp-0"}}));

    console.key(Key::Esc);
    ASSERT_TRUE(WaitSettled(console, "<Esc> Log Out"));
    ASSERT_TRUE(GoToEntry(console, "Test Management Network"));
    ASSERT_TRUE(RunNetworkTest(console));
    ExpectEveryStep(console, "OK.", true);
    EXPECT_FALSE(console.find("Failed.")) << console.dump();
    EXPECT_TRUE(root.hasLogLine("Command \"zrkping -c 3 192.168.10.1\" succeeded"));
}

}  // namespace
