// "Restore Network Settings": the F11 question, the running machines, the
// power-off and the reset of the host's network to its factory layout; the
// rows a standard switch host greys.
#include "tests/recovery/recovery_support.h"

using namespace RecoveryTest;

namespace {

constexpr char kEvent[] = "nox.user.tesk.factory.network.restored";

// From the window to the F11 question of the factory restore.
bool AskFactoryRestore(ConsoleSession& console) {
    Down(console, 2);  // the migration row is grey on the default host
    return KeyThen(console, Key::Enter, "Are you sure you want to reset");
}

void ExpectRestoreRecorded(SimRoot& root) {
    EXPECT_TRUE(root.waitForLogLine("Restoring factory network settings"));
    EXPECT_FALSE(root.logLinesWith(kEvent, "/var/log/noxd.log").empty());
}

}  // namespace

// A host failure first (the network cleared before it is put back), then
// the restore without running machines: the network reset at once.
TEST(FactoryRestore, WithoutRunningMachinesResetsTheNetworkAtOnce) {
    SimRoot root("default");
    root.editState([](Json& s) { s["vms"][0]["running"] = false; });
    root.setFault("network.autoConfigNetwork", {{"exception", "No DHCP client"}});
    const Json before = root.state()["network"];
    ConsoleSession console(root, LocalConsole(kCols, kRows));
    ASSERT_TRUE(OpenRestoreWindow(console));
    ASSERT_TRUE(AskFactoryRestore(console));
    ASSERT_TRUE(KeyThen(console, FKey(11), "Operation Failed"));
    EXPECT_TRUE(root.hasLogLine("Restoring factory network settings failed: No DHCP client"));
    EXPECT_EQ(root.state()["network"], before);
    ASSERT_TRUE(BackToWindow(console));

    root.setFault("network.autoConfigNetwork", nullptr);
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Are you sure you want to reset"));
    ASSERT_TRUE(KeyThen(console, FKey(11), "Auto-configuring network. Done."));
    EXPECT_EQ(console.text().find("Powering Off VMs."), std::string::npos);
    EXPECT_TRUE(root.hasLogLine("Clearing Network Config"));
    EXPECT_TRUE(root.hasLogLine("Auto-Configuring Network"));
    // The host's own factory layout (the simulated host's): one switch, DHCP.
    const Json net = root.state()["network"];
    EXPECT_EQ(net["standardSwitches"].size(), 1u);
    EXPECT_EQ(net["zrkNics"][0]["config"]["dhcp"], true);
    // <Enter> closes the progress; the record is written after it.
    ASSERT_TRUE(BackToWindow(console));
    ExpectRestoreRecorded(root);
}

// Declining to stop the machines changes nothing but is recorded; a failed
// power-off leaves the network alone.
// (First the window on a standard switch host without the operations agent:
// its rows greyed, and the pane that follows the selection.)
TEST(FactoryRestore, RunningMachinesAreAskedAboutAndAFailedPowerOffChangesNothing) {
    SimRoot root("default");
    const Json before = root.state()["network"];
    ConsoleSession console(root, RemoteShell(kCols, kRows));
    ASSERT_TRUE(OpenRestoreWindow(console));
    const auto enabled = RowColour(console, "Create Port Group");
    EXPECT_EQ(RowColour(console, "Restore Network Settings"), enabled);
    for (const char* grey :
         {"Migrate Zerkel NIC to Standard Switch", "Restore Standard Switch", "Restore qDS"})
        EXPECT_NE(RowColour(console, grey), enabled) << grey;
    // The window's own footer until the selection moves, then the row's; the
    // greyed migration row is skipped.
    Down(console);
    EXPECT_NE(PaneFooter(console).find("<Enter> Create"), std::string::npos);
    Down(console);
    EXPECT_NE(Pane(console).find("will revert all network configuration"), std::string::npos);
    EXPECT_NE(PaneFooter(console).find("<Enter> Restart"), std::string::npos);
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Are you sure you want to reset"));
    ASSERT_TRUE(KeyThen(console, FKey(11), "Warning: VMs running on the host"));
    ASSERT_TRUE(BackToWindow(console, Key::Esc));
    ExpectRestoreRecorded(root);
    EXPECT_EQ(root.state()["network"], before);
    EXPECT_EQ(root.state()["vms"][0]["running"], true);

    root.setFault("powerOffVms", {{"exitStatus", 1}});
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Are you sure you want to reset"));
    ASSERT_TRUE(KeyThen(console, FKey(11), "Warning: VMs running on the host"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Powering Off VMs. Failed."));
    EXPECT_TRUE(root.hasLogLine("Powering off VMs failed"));
    EXPECT_FALSE(root.hasLogLine("Clearing Network Config"));
    EXPECT_EQ(root.state()["network"]["standardSwitches"], before["standardSwitches"]);
    // The dump target is switched off on every path.
    EXPECT_EQ(root.state()["network"]["netDumper"]["enabled"], false);
    ASSERT_TRUE(BackToWindow(console));
}
