// Shutting down and restarting the host from the welcome screen: the keys of
// the question, the force option turned into the kind of power-off, a power
// command that cannot start, and what the simulated host and `tesk-sim run`
// make of the power commands.
#include "tests/admin/admin_support.h"

using namespace AdminTest;

namespace {

TEST(Shutdown, OnlyItsOwnKeysActAndEscLeavesWithoutASession) {
    SimRoot root;
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(OpenShutdownDialog(console));
    EXPECT_TRUE(console.find("Shut Down/Restart"));
    EXPECT_TRUE(console.find("<F2> Shut Down  <F11> Restart"));
    console.key(Key::Enter);
    console.type("x");
    EXPECT_TRUE(console.waitForQuiet());
    EXPECT_TRUE(console.find("Forcefully terminate"));
    EXPECT_EQ(StateText(root, "/power/state"), "");

    ASSERT_TRUE(Dismiss(console, "Forcefully terminate", Key::Esc));
    EXPECT_TRUE(WaitWelcome(console));
    EXPECT_EQ(StateText(root, "/power/state"), "");
    // A login on this path starts no session: nothing records a logout.
    EXPECT_TRUE(AuditRecords(root, "tesk.logout").empty());
}

TEST(Shutdown, ForceOptionDecidesHowMachinesArePoweredOff) {
    struct Case {
        bool force;
        const char* key;  // F2 or F11
        const char* vmPowerOff;
        const char* powerState;
        const char* logLine;
        const char* event;
    };
    const Case cases[] = {
        {false, "F2", "graceful", "poweredOff", "Shutting down host",
         "nox.user.tesk.shutdown.host"},
        {true, "F2", "terminate", "poweredOff", "Shutting down host",
         "nox.user.tesk.shutdown.host"},
        {true, "F11", "terminate", "rebooting", "Rebooting host", "nox.user.tesk.reboot.host"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.key) + (c.force ? " forced" : " graceful"));
        SimRoot root;
        ConsoleSession console(root, LocalConsole());
        ASSERT_TRUE(OpenShutdownDialog(console));
        if (c.force) {
            console.type(" ");
            ASSERT_TRUE(console.waitForText("[X]"));
        }
        console.key(FKey(std::string(c.key) == "F2" ? 2 : 11));
        // The host's init ends the console once the command ran.
        EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
        EXPECT_EQ(StateText(root, "/power/state"), c.powerState);
        EXPECT_EQ(StateText(root, "/power/lastVmPowerOff"), c.vmPowerOff);
        EXPECT_EQ(StateText(root, "/vms/0/running"), "false");
        EXPECT_FALSE(root.logLinesWith(c.logLine).empty()) << root.logTail();
        EXPECT_FALSE(root.logLinesWith(c.event, "/var/log/noxd.log").empty());
        // The virtual machines were stopped as the user who logged in.
        auto requests = root.stateValue("/hostAgent/requests");
        ASSERT_TRUE(requests && !requests->empty());
        EXPECT_EQ(requests->back().value("user", ""), "root");
        EXPECT_EQ(requests->back().value("command", ""), "hostsvc/autostartmanager/autostop");
    }
}

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
    EXPECT_EQ(console.status(), ExitStatus::Running());

    // Usable once more: a restart now goes through.
    root.setFault("sh", nullptr);
    console.key(FKey(11));
    EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
    EXPECT_EQ(StateText(root, "/power/state"), "rebooting");
}

TEST(Shutdown, ProgressScreenStaysAndDiscardsKeysOnceTheCommandRuns) {
    SimRoot root;
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(OpenShutdownDialog(console));
    // The command starts and never ends, like a host on its way down.
    root.setFault("poweroff", {{"hang", true}});
    console.key(FKey(2));
    ASSERT_TRUE(WaitSettled(console, "Shutdown in progress..."));
    console.key(Key::Esc);
    console.key(Key::Enter);
    console.key(FKey(2));
    EXPECT_TRUE(console.waitForQuiet());
    EXPECT_TRUE(console.find("Shutdown in progress..."));
    EXPECT_EQ(console.status(), ExitStatus::Running());
    console.signal(SIGTERM);
    EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
}

// `tesk-sim run` on a root: a restart brings a fresh console up on the same
// root, as the host's init would after the boot; a power-off ends the run.
TEST(Shutdown, SimulatedRunRestartsAndPowersOff) {
    SimRoot root;
    SessionOptions options = LocalConsole();
    options.program = TeskTest::SimBinary();
    options.args = {"run", root.path()};
    ConsoleSession run(root, options);
    ASSERT_TRUE(OpenShutdownDialog(run));
    run.key(FKey(11));
    ASSERT_TRUE(run.waitFor([&] { return StateText(root, "/power/boots") == "1"; },
                            "the host booted again"));
    EXPECT_EQ(StateText(root, "/power/state"), "on");
    EXPECT_EQ(StateText(root, "/power/reboots"), "1");
    // The new console is up and works like the first.
    ASSERT_TRUE(OpenShutdownDialog(run));
    run.key(FKey(2));
    EXPECT_EQ(run.waitExit(), ExitStatus::Exited(0));
    EXPECT_NE(run.output().find("The simulated host is powered off."), std::string::npos);
    EXPECT_EQ(StateText(root, "/power/state"), "poweredOff");
    EXPECT_EQ(StateText(root, "/power/boots"), "1");
}

}  // namespace
