// "Restore Network Settings": the F11 question, the running machines, the
// power-off and the reset of the host's network to its factory layout.
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

TEST(FactoryRestore, WithoutRunningMachinesResetsTheNetworkAtOnce) {
    SimRoot root("default");
    root.editState([](Json& s) { s["vms"][0]["running"] = false; });
    ConsoleSession console(root, LocalConsole(kCols, kRows));
    ASSERT_TRUE(OpenRestoreWindow(console));
    ASSERT_TRUE(AskFactoryRestore(console));

    // Only F11 goes on.
    console.key(Key::Enter);
    console.waitForQuiet(std::chrono::milliseconds(500));
    EXPECT_FALSE(root.hasLogLine("Clearing Network Config"));
    EXPECT_TRUE(console.waitForText("Are you sure you want to reset"));

    ASSERT_TRUE(KeyThen(console, FKey(11), "Auto-configuring network. Done."));
    EXPECT_EQ(console.text().find("Powering Off VMs."), std::string::npos);
    EXPECT_TRUE(root.hasLogLine("Clearing Network Config"));
    EXPECT_TRUE(root.hasLogLine("Auto-Configuring Network"));

    const Json net = root.state()["network"];
    ASSERT_EQ(net["standardSwitches"].size(), 1u);
    const Json& vswitch = net["standardSwitches"][0];
    EXPECT_EQ(vswitch["name"], "zSwitch0");
    EXPECT_EQ(vswitch["uplinks"], Json::array({"pnic0"}));
    EXPECT_TRUE(FindNamed(vswitch["portGroups"], "Management Network"));
    EXPECT_TRUE(FindNamed(vswitch["portGroups"], "VM Network"));
    EXPECT_EQ(net["managementInterface"], "zrk0");
    EXPECT_EQ(net["zrkNics"][0]["config"]["dhcp"], true);
    EXPECT_EQ(net["netDumper"]["enabled"], false);
    EXPECT_EQ(net["pnics"].size(), 4u);  // the machine keeps its adapters

    // <Enter> closes the progress; the record is written after it.
    ASSERT_TRUE(BackToWindow(console));
    ExpectRestoreRecorded(root);
}

TEST(FactoryRestore, DecliningToStopTheMachinesChangesNothingButIsRecorded) {
    SimRoot root("default");
    const Json before = root.state()["network"];
    ConsoleSession console(root, LocalConsole(kCols, kRows));
    ASSERT_TRUE(OpenRestoreWindow(console));
    ASSERT_TRUE(AskFactoryRestore(console));
    ASSERT_TRUE(KeyThen(console, FKey(11), "Warning: VMs running on the host"));
    ASSERT_TRUE(BackToWindow(console, Key::Esc));

    ExpectRestoreRecorded(root);
    EXPECT_EQ(root.state()["network"], before);
    EXPECT_EQ(root.state()["vms"][0]["running"], true);
}

TEST(FactoryRestore, FailedPowerOffLeavesTheNetworkAlone) {
    SimRoot root("default");
    root.setFault("powerOffVms", {{"exitStatus", 1}});
    const Json switches = root.state()["network"]["standardSwitches"];
    ConsoleSession console(root, LocalConsole(kCols, kRows));
    ASSERT_TRUE(OpenRestoreWindow(console));
    ASSERT_TRUE(AskFactoryRestore(console));
    ASSERT_TRUE(KeyThen(console, FKey(11), "Warning: VMs running on the host"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Powering Off VMs. Failed."));

    EXPECT_TRUE(root.hasLogLine("Powering off VMs failed"));
    EXPECT_FALSE(root.hasLogLine("Clearing Network Config"));
    EXPECT_EQ(root.state()["network"]["standardSwitches"], switches);
    // The dump target is switched off on every path.
    EXPECT_EQ(root.state()["network"]["netDumper"]["enabled"], false);
    // Only <Enter> leaves the progress.
    console.key(Key::Esc);
    console.waitForQuiet(std::chrono::milliseconds(1500));
    EXPECT_TRUE(console.waitForText("Powering Off VMs. Failed."));
    ASSERT_TRUE(BackToWindow(console));
    ExpectRestoreRecorded(root);
}

TEST(FactoryRestore, HostFailureIsShownAndTheConsoleStays) {
    SimRoot root("default");
    root.editState([](Json& s) { s["vms"][0]["running"] = false; });
    root.setFault("network.autoConfigNetwork", {{"exception", "No DHCP client"}});
    ConsoleSession console(root, LocalConsole(kCols, kRows));
    ASSERT_TRUE(OpenRestoreWindow(console));
    ASSERT_TRUE(AskFactoryRestore(console));
    const Json before = root.state()["network"];
    ASSERT_TRUE(KeyThen(console, FKey(11), "Operation Failed"));
    EXPECT_TRUE(root.hasLogLine("Restoring factory network settings failed: No DHCP client"));
    // The network cleared before the failure is back as it was.
    EXPECT_EQ(root.state()["network"], before);

    ASSERT_TRUE(BackToWindow(console));
    // Still at work: the window takes keys.
    console.key(Key::Up);
    EXPECT_TRUE(WaitPane(console, "Create a new port group"));
    EXPECT_EQ(console.status(), ExitStatus::Running());
}
