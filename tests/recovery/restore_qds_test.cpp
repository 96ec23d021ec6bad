// "Restore qDS": a new host-local port with the given VLAN, blocking and
// uplinks, the rest cloned from the management interface's port, and the
// management interface moved onto it; what it refuses and reports.
#include "tests/recovery/recovery_support.h"

using namespace RecoveryTest;

namespace {

constexpr char kInvalidVlan[] = "Please enter a valid VLAN ID (1-4094).";

void ReplaceVlan(ConsoleSession& console, std::string_view text) {
    console.keys({Key::Down, Key::Up});
    console.waitForQuiet(std::chrono::milliseconds(300));
    TypeSettled(console, text);
}

}  // namespace

// A switch without uplinks is refused after the properties, a host failure
// after the uplinks; then the port is made.
TEST(RestoreQds, BuildsAHostLocalPortAndMovesManagementOntoIt) {
    SimRoot root("qds");
    const Json uplinks = root.state()["network"]["distributedSwitches"][0]["uplinks"];
    root.editState(
        [](Json& s) { s["network"]["distributedSwitches"][0]["uplinks"] = Json::object(); });
    ConsoleSession console(root, RemoteShell(kCols, kRows));
    ASSERT_TRUE(OpenRestoreWindow(console));
    // A distributed switch host with the agent offers every row: the fifth
    // below the first is this one.
    Down(console, 5);
    EXPECT_NE(PaneFooter(console).find("<Enter> Restore"), std::string::npos);
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Enter the properties for new qDS host local port"));
    ASSERT_TRUE(
        KeyThen(console, Key::Enter, "No uplinks are configured on the host for this qDS."));
    ASSERT_TRUE(BackToWindow(console));

    root.editState([&](Json& s) { s["network"]["distributedSwitches"][0]["uplinks"] = uplinks; });
    root.setFault("qds.addHostLocalPort", {{"exception", "Port table full"}});
    const Json before = root.state()["network"];
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Enter the properties for new qDS host local port"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Select qDS uplinks"));
    console.key(" ");
    ASSERT_TRUE(console.waitForText("[X] pnic1"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Unable to restore qDS. Check logs for details."));
    ASSERT_TRUE(BackToWindow(console));
    EXPECT_TRUE(root.hasLogLine("Restore qDS failed: Port table full"));
    EXPECT_EQ(root.state()["network"], before);

    root.setFault("qds.addHostLocalPort", nullptr);
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Enter the properties for new qDS host local port"));
    EXPECT_TRUE(console.waitForText("[ 30"));  // the port's VLAN to start from

    for (const char* vlan : {"0", "4095"}) {
        SCOPED_TRACE(vlan);
        ReplaceVlan(console, vlan);
        ASSERT_TRUE(KeyThen(console, Key::Enter, kInvalidVlan));
        ASSERT_TRUE(Dismiss(console, kInvalidVlan));
    }
    ReplaceVlan(console, "40");
    console.keys({Key::Down, " "});  // unblock
    ASSERT_TRUE(console.waitForText("[X]"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Select qDS uplinks"));

    // None chosen: asked, and <Esc> goes back to the choice.
    ASSERT_TRUE(KeyThen(console, Key::Enter, "No uplinks were selected."));
    ASSERT_TRUE(Dismiss(console, "No uplinks were selected.", Key::Esc));
    console.key(" ");  // pnic1
    ASSERT_TRUE(console.waitForText("[X] pnic1"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, "moved to port hlp-0 of qDS-Prod"));
    ASSERT_TRUE(BackToWindow(console));

    const Json net = root.state()["network"];
    const Json& qds = net["distributedSwitches"][0];
    EXPECT_EQ(qds["ports"], Json::array({"10", "11", "12", "hlp-0"}));
    const Json& port = qds["portSettings"]["hlp-0"];
    EXPECT_EQ(port["vlanId"], 40);
    EXPECT_EQ(port["blocked"], false);
    EXPECT_EQ(port["activeUplinks"], Json::array({"uplink1"}));
    EXPECT_EQ(port["standbyUplinks"], Json::array({"uplink2"}));
    EXPECT_EQ(port["properties"], qds["portSettings"]["10"]["properties"]);
    EXPECT_EQ(net["zrkNics"][0]["connection"],
              Json({{"type", "qdsPort"}, {"switch", "qDS-Prod"}, {"port", "hlp-0"}}));
    EXPECT_TRUE(root.hasLogLine("Restore qDS: moved zrk0 to port hlp-0 of qDS-Prod"));
}
