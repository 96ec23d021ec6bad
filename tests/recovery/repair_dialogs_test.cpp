// The repair dialogs for standard switches, port groups and Zerkel NICs:
// what they refuse, what they create, and how a failing tool is reported.
#include "tests/recovery/recovery_support.h"

using namespace RecoveryTest;

namespace {

// Shows a message with text after <Enter> on the form, then closes it with
// <Enter> and waits for the form to take keys again.
void ExpectMessage(ConsoleSession& console, std::string_view text,
                   std::source_location where = std::source_location::current()) {
    ASSERT_TRUE(KeyThen(console, Key::Enter, text, where) &&
                Dismiss(console, text, Key::Enter, where));
}

// Puts text into the form's first field, which the selection leaves and
// takes again so that typing replaces what was there.
void ReplaceName(ConsoleSession& console, std::string_view text) {
    console.keys({Key::Down, Key::Up});
    console.waitForQuiet(std::chrono::milliseconds(300));
    TypeSettled(console, text);
}

constexpr char kInvalidSwitch[] = "Please enter a valid standard switch name.";
constexpr char kInvalidGroup[] = "Please enter a valid port group name.";

}  // namespace

// A host that makes no second standard switch says why in the rows' pane,
// and <Enter> opens nothing.
TEST(CreateVss, AHostWithOneSwitchGreysTheCreateRowsAndSaysWhy) {
    SimRoot root("default");
    root.editState([](Json& s) { s["notOffered"]["secondStandardSwitch"] = "One bridge {only}."; });
    ConsoleSession console(root, LocalConsole(kCols, kRows));
    ASSERT_TRUE(OpenRestoreWindow(console));
    EXPECT_NE(Pane(console).find("One bridge {only}."), std::string::npos) << Pane(console);
    console.key(Key::Enter);
    console.waitForQuiet(std::chrono::milliseconds(300));
    EXPECT_FALSE(console.find("Switch Name:")) << console.text();
}

// A failing host first (reported, nothing changed), then the dialog again:
// a name in use and a used uplink refused, a free one taken.
TEST(CreateVss, RefusesUsedNamesAndUplinksThenCreatesASwitchAndAPortGroup) {
    SimRoot root("default");
    root.setFault("vswitchInfo.addVirtualSwitch", {{"exception", "Switch table full"}});
    const Json before = root.state()["network"];
    ConsoleSession console(root, LocalConsole(kCols, kRows));
    ASSERT_TRUE(OpenRestoreWindow(console));
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Switch Name:"));
    TypeSettled(console, "zSwitch9");
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Please check the syslog for more information."));
    ASSERT_TRUE(BackToWindow(console));
    EXPECT_TRUE(root.hasLogLine("Adding virtual switch failed: Switch table full"));
    EXPECT_TRUE(root.hasLogLine("Creating standard switch zSwitch9 failed"));
    EXPECT_EQ(root.state()["network"], before);

    root.setFault("vswitchInfo.addVirtualSwitch", nullptr);
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Switch Name:"));
    EXPECT_TRUE(console.waitForText("pnic0  (used by zSwitch0)"));

    // A name in use is refused like a malformed one (the rules: names_test.cpp).
    ReplaceName(console, "zSwitch1");
    ExpectMessage(console, kInvalidSwitch);
    ReplaceName(console, "zSwitch9");
    console.keys({Key::Down, Key::Down, " "});  // pnic0, used by zSwitch0
    console.waitForQuiet(std::chrono::milliseconds(300));
    ExpectMessage(console, "Uplink is already in use");
    EXPECT_FALSE(FindNamed(root.state()["network"]["standardSwitches"], "zSwitch9"));

    console.keys({Key::Down, Key::Down, Key::Down, " "});  // pnic3, free
    console.waitForQuiet(std::chrono::milliseconds(300));
    ASSERT_TRUE(
        KeyThen(console, Key::Enter, "Successfully created standard virtual switch: zSwitch9"));
    EXPECT_TRUE(root.hasLogLine("Created standard switch zSwitch9 with uplink pnic3"));
    const Json net = root.state()["network"];
    const Json* created = FindNamed(net["standardSwitches"], "zSwitch9");
    ASSERT_TRUE(created);
    EXPECT_EQ((*created)["uplinks"], Json::array({"pnic3"}));
    EXPECT_EQ((*created)["teamingPolicy"]["activeUplinks"], Json::array({"pnic3"}));
    ASSERT_TRUE(BackToWindow(console));

    // Port groups the same way: a name in use, then one made.
    Down(console);
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Portgroup Name:"));
    ReplaceName(console, "VM Network");
    ExpectMessage(console, kInvalidGroup);
    ReplaceName(console, "Backup Net");
    console.keys({Key::Down, Key::Down, " "});  // zSwitch1
    console.waitForQuiet(std::chrono::milliseconds(300));
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Successfully created portgroup: Backup Net"));
    EXPECT_TRUE(root.hasLogLine("Created port group Backup Net on standard switch zSwitch1"));
    const Json after = root.state()["network"];
    const Json* vswitch = FindNamed(after["standardSwitches"], "zSwitch1");
    ASSERT_TRUE(vswitch);
    EXPECT_TRUE(FindNamed((*vswitch)["portGroups"], "Backup Net"));
    ASSERT_TRUE(BackToWindow(console));
}

// A failing move first (the agent cannot be stopped either), then one that
// goes through.
TEST(MigrateZrknic, ConnectsTheNicAroundAStoppedAgentOrChangesNothing) {
    SimRoot root("qds");
    root.setFault("plexcfg-vswitch", {{"exitStatus", 1}});
    root.setFault("plex-opsagent:stop", {{"exitStatus", 1}});
    const Json before = root.state()["network"];
    ConsoleSession console(root, LocalConsole(kCols, kRows));
    ASSERT_TRUE(OpenRestoreWindow(console));
    Down(console, 2);
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Zerkel NIC Name: zrk0"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Operation Failed"));
    ASSERT_TRUE(BackToWindow(console));
    EXPECT_TRUE(root.hasLogLine("Failed to stop plex-opsagent."));
    EXPECT_TRUE(root.hasLogLine("Skipping plex-opsagent start."));
    EXPECT_TRUE(root.hasLogLine("Migrating Zerkel NIC zrk0 to port group VM Network failed"));
    EXPECT_EQ(root.state()["network"], before);

    root.editState([](Json& s) { s["faults"] = Json::object(); });
    const auto stops = root.logLinesWith("Stopping plex-opsagent.").size();
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Portgroup Name: VM Network"));
    EXPECT_TRUE(console.waitForText("Zerkel NIC Name: zrk0"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Zerkel NIC zrk0 migrated to port group VM Network"));
    ASSERT_TRUE(BackToWindow(console));
    EXPECT_EQ(root.logLinesWith("Stopping plex-opsagent.").size(), stops + 1);
    EXPECT_TRUE(root.hasLogLine("Starting plex-opsagent."));
    EXPECT_EQ(root.state()["network"]["zrkNics"][0]["connection"],
              Json({{"type", "portGroup"}, {"portGroup", "VM Network"}}));
}
