// Shutting down and restarting the host from the welcome screen: leaving the
// question, the force option turned into the kind of power-off, a power
// command that cannot start, and the progress screen that keeps the screen.
#include "tests/admin/admin_support.h"

using namespace AdminTest;

namespace {

// The console ended after the host's init ran the power command, the
// machines stopped as the user who logged in and in the given way.
void ExpectPoweredOff(ConsoleSession& console, const SimRoot& root, const char* vmPowerOff,
                      const char* powerState, const char* logLine, const char* event) {
    EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
    EXPECT_EQ(StateText(root, "/power/state"), powerState);
    EXPECT_EQ(StateText(root, "/power/lastVmPowerOff"), vmPowerOff);
    EXPECT_EQ(StateText(root, "/vms/0/running"), "false");
    EXPECT_FALSE(root.logLinesWith(logLine).empty()) << root.logTail();
    EXPECT_FALSE(root.logLinesWith(event, "/var/log/noxd.log").empty());
    auto requests = root.stateValue("/hostAgent/requests");
    ASSERT_TRUE(requests && !requests->empty());
    EXPECT_EQ(requests->back().value("user", ""), "root");
    EXPECT_EQ(requests->back().value("command", ""), "hostsvc/autostartmanager/autostop");
}

// Esc leaves without a session; once the command runs the progress screen
// stays and discards every key.
TEST(Shutdown, EscLeavesAndTheProgressScreenStays) {
    SimRoot root;
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(OpenShutdownDialog(console));
    ASSERT_TRUE(Dismiss(console, "Forcefully terminate", Key::Esc));
    EXPECT_EQ(StateText(root, "/power/state"), "");
    EXPECT_TRUE(AuditRecords(root, "tesk.logout").empty()) << "a session was started";

    // The command starts and never ends, like a host on its way down.
    root.setFault("poweroff", {{"hang", true}});
    ASSERT_TRUE(OpenShutdownDialog(console));
    console.key(FKey(2));
    ASSERT_TRUE(WaitSettled(console, "Shutdown in progress..."));
    console.keys({Key::Esc, Key::Enter, FKey(2)});
    EXPECT_TRUE(console.waitForQuiet());
    EXPECT_TRUE(console.find("Shutdown in progress..."));
    EXPECT_EQ(console.status(), ExitStatus::Running());
    console.signal(SIGTERM);
    EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
}

TEST(Shutdown, WithoutForceF2ShutsDownAndStopsTheMachinesGracefully) {
    SimRoot root;
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(OpenShutdownDialog(console));
    console.key(FKey(2));
    ExpectPoweredOff(console, root, "graceful", "poweredOff", "Shutting down host",
                     "nox.user.tesk.shutdown.host");
}

// A power command that cannot start returns to the question, which then
// works: forced, F11 restarts and terminates the machines.
TEST(Shutdown, PowerCommandThatCannotStartReturnsToTheQuestion) {
    SimRoot root;
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(OpenShutdownDialog(console));
    root.setFault("sh", {{"signal", 9}});
    console.key(FKey(2));
    ASSERT_TRUE(console.waitForText("Shutdown in progress..."));
    ASSERT_TRUE(console.waitForTextGone("Shutdown in progress..."));
    ASSERT_TRUE(WaitSettled(console, "Forcefully terminate"));
    EXPECT_EQ(StateText(root, "/power/state"), "");

    root.setFault("sh", nullptr);
    console.type(" ");
    ASSERT_TRUE(console.waitForText("[X]"));
    console.key(FKey(11));
    ExpectPoweredOff(console, root, "terminate", "rebooting", "Rebooting host",
                     "nox.user.tesk.reboot.host");
}

}  // namespace
