// "Restore Standard Switch": the management network and its uplinks moved
// onto the next free standard switch, and what happens when parts of it fail.
#include "tests/recovery/recovery_support.h"

using namespace RecoveryTest;

namespace {

// From the window (qds host, every row enabled) through F11.
bool RestoreStandardSwitch(ConsoleSession& console) {
    Down(console, 4);
    if (!KeyThen(console, Key::Enter, "Move the management network onto a standard switch?"))
        return false;
    return BackToWindow(console, FKey(11));
}

// After the restore the row is grey and the selection on "Restore qDS".
void ExpectRowDone(ConsoleSession& console) {
    EXPECT_NE(Pane(console).find("Reconfigure properties of misconfigured qDS"), std::string::npos);
    auto done = console.find("Restore Standard Switch");
    auto other = console.find("Create Port Group");
    ASSERT_TRUE(done && other);
    EXPECT_NE(console.cell(done->col, done->row).fg, console.cell(other->col, other->row).fg);
}

}  // namespace

TEST(SafeMode, MovesTheManagementNetworkOntoTheNextFreeNames) {
    SimRoot root("qds");
    root.editState([](Json& s) {
        Json& net = s["network"];
        net["standardSwitches"].push_back({{"name", "zSwitch1"},
                                           {"numPorts", 128},
                                           {"uplinks", Json::array()},
                                           {"portGroups", Json::array()}});
        net["standardSwitches"][0]["portGroups"].push_back(
            {{"name", "Management Network1"}, {"vlanId", 0}, {"vmClients", 0}});
        // An uplink the host does not have: its move fails, the others go on.
        net["distributedSwitches"][0]["uplinks"]["pnic9"] = "uplink9";
        net["zrkNics"].push_back(
            {{"name", "zrk1"},
             {"mac", "02:5a:4b:a1:30:00"},
             {"enabled", true},
             {"connection", {{"type", "portGroup"}, {"portGroup", "VM Network"}}}});
    });
    ConsoleSession console(root, RemoteShell(kCols, kRows));
    ASSERT_TRUE(OpenRestoreWindow(console));
    ASSERT_TRUE(RestoreStandardSwitch(console));
    ExpectRowDone(console);

    // The line that names the new switch and port group comes before the
    // closing one.
    const auto moved = LogLineOf(
        root, "Management interface zrk0 moved to port group Management Network2 on zSwitch2");
    EXPECT_LT(LogLineOf(root, "Moving uplink pnic9 failed"), moved);
    EXPECT_LT(moved, LogLineOf(root,
                               "Enabling safe mode networking by moving all uplinks to a "
                               "new management zSwitch"));
    EXPECT_LT(moved, root.logLines().size()) << root.logTail();
    const Json net = root.state()["network"];
    const Json* created = FindNamed(net["standardSwitches"], "zSwitch2");
    ASSERT_TRUE(created) << net["standardSwitches"];
    EXPECT_EQ((*created)["numPorts"], 128);
    EXPECT_EQ((*created)["uplinks"], Json::array({"pnic1", "pnic2"}));
    EXPECT_EQ((*created)["teamingPolicy"]["activeUplinks"], Json::array({"pnic1", "pnic2"}));
    ASSERT_TRUE(FindNamed((*created)["portGroups"], "Management Network2"));
    // Every uplink was dropped from the distributed switch, the failing one too.
    EXPECT_EQ(net["distributedSwitches"][0]["uplinks"], Json::object());

    const Json* zrk0 = FindNamed(net["zrkNics"], "zrk0");
    ASSERT_TRUE(zrk0);
    EXPECT_EQ((*zrk0)["connection"],
              Json({{"type", "portGroup"}, {"portGroup", "Management Network2"}}));
    // The management interface can be used again.
    EXPECT_EQ((*zrk0)["enabled"], true);
    EXPECT_EQ((*zrk0)["up"], true);
    // Every other Zerkel NIC stays disabled.
    EXPECT_EQ((*FindNamed(net["zrkNics"], "zrk1"))["enabled"], false);
}

TEST(SafeMode, FailureMidwayIsLoggedAndPutsTheOldSwitchesBack) {
    SimRoot root("qds");
    root.setFault("zrkNic.connectToPortGroup", {{"exception", "Port group busy"}});
    const Json before = root.state()["network"];
    ConsoleSession console(root, RemoteShell(kCols, kRows));
    ASSERT_TRUE(OpenRestoreWindow(console));
    ASSERT_TRUE(RestoreStandardSwitch(console));
    ExpectRowDone(console);

    EXPECT_TRUE(root.hasLogLine("Changing to legacy virtual switch failed: Port group busy"));
    EXPECT_TRUE(root.hasLogLine("Enabling safe mode networking"));
    // No new switch half made, no interface left disabled.
    EXPECT_EQ(root.state()["network"], before);
    EXPECT_FALSE(root.stateValue("/pendingChange"));
}
