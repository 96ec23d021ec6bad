// The troubleshooting options: the shell and SSH switches with their
// fallbacks and the firewall, the timeouts item that follows both services,
// the shell timeouts' range check and write, and the console's idle timeout
// taking effect at once.
#include "tests/admin/admin_support.h"

using namespace AdminTest;

namespace {

// The menu, then the troubleshooting window on its first row.
bool OpenTroubleshooting(ConsoleSession& console) {
    return OpenEntry(console, "Troubleshooting Options", "Troubleshooting Mode Options") &&
           WaitSettled(console, "<Esc> Exit");
}

// The console timeout dialog's title ("TESK idle timeout" is in the window too).
constexpr std::string_view kTeskDialog = "Set idle timeout for TESK access";

// The timeouts item is reachable only while both services are off (and its
// values are range-checked); SSH switched on opens the firewall (off leaves
// it alone) and falls back to the init script when the management tool fails.
TEST(Troubleshooting, SwitchesTheTimeoutsItemAndTheFirewall) {
    SimRoot root;
    root.editState([](Json& s) {
        s["services"]["KovaShell"] = {{"running", true}, {"enabled", true}};
        s["services"]["SSH"] = {{"running", true}, {"enabled", true}};
        s["systemInfo"]["firewall"]["rulesets"] = {{{"id", "sshServer"},
                                                    {"enabled", false},
                                                    {"serviceControlled", true},
                                                    {"active", false}}};
    });
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(OpenTroubleshooting(console));
    EXPECT_TRUE(console.find("Disable SSH"));
    EXPECT_TRUE(console.find("Kovix Shell is Enabled"));

    ASSERT_TRUE(KeyThen(console, Key::Enter, "Enable Kovix Shell"));
    EXPECT_TRUE(console.find("Kovix Shell is Disabled"));
    EXPECT_EQ(StateText(root, "/services/KovaShell/running"), "false");
    EXPECT_EQ(StateText(root, "/services/KovaShell/enabled"), "false");
    EXPECT_FALSE(root.logLinesWith("User root disabled Kovix Shell").empty());
    ASSERT_TRUE(StepSelection(console));
    EXPECT_TRUE(PaneHeading(console).starts_with("SSH Support"));
    ASSERT_TRUE(StepSelection(console));
    EXPECT_TRUE(PaneHeading(console).starts_with("Modify TESK idle timeout"));

    ASSERT_TRUE(StepSelection(console, Key::Up));
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Enable SSH"));
    EXPECT_EQ(StateText(root, "/services/SSH/running"), "false");
    EXPECT_FALSE(root.logLinesWith("User root disabled SSH").empty());
    EXPECT_EQ(StateText(root, "/systemInfo/firewall/rulesets/0/enabled"), "false");
    ASSERT_TRUE(StepSelection(console));
    EXPECT_TRUE(PaneHeading(console).starts_with("Modify Kovix Shell and SSH timeouts"));

    // The shell timeouts: range-checked and written in seconds.
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Availability timeout"));
    for (const char* bad : {"1441", "-1"}) {
        SCOPED_TRACE(bad);
        Retype(console, bad);
        ASSERT_TRUE(
            KeyThen(console, Key::Enter, "Timeout value must be between 0 (disabled) and 1440"));
        ASSERT_TRUE(Dismiss(console, "Timeout value must be between"));
    }
    ASSERT_TRUE(WaitSettled(console, "Availability timeout"));
    Retype(console, "1440");
    console.key(Key::Enter);
    ASSERT_TRUE(root.waitForLogLine("Modified Shell timeout to 1440 minutes"));
    ASSERT_TRUE(console.waitForTextGone("Availability timeout"));
    EXPECT_EQ(StateText(root, "/advancedOptions/~1UserVars~1KovixShellTimeOut/value"), "86400");
    // The idle field kept its value: nothing written for it.
    EXPECT_TRUE(root.logLinesWith("shell interactive timeout").empty());
    ASSERT_TRUE(WaitSettled(console, "<Esc> Exit"));

    ASSERT_TRUE(StepSelection(console, Key::Up));
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Disable SSH"));
    EXPECT_EQ(StateText(root, "/services/SSH/running"), "true");
    EXPECT_EQ(StateText(root, "/systemInfo/firewall/rulesets/0/enabled"), "true");
    EXPECT_EQ(StateText(root, "/systemInfo/firewall/rulesets/0/active"), "true");

    // A firewall failure is logged and the switch goes on.
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Enable SSH"));
    root.setFault("rux-cmd:hostsvc/start_ssh", {{"exitStatus", 1}});
    root.setFault("firewall.isServiceControlled", {{"exception", "firewall busy"}});
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Disable SSH"));
    EXPECT_FALSE(root.logLinesWith("Unable to run rux-cmd to start/stop ssh").empty());
    EXPECT_FALSE(
        root.logLinesWith("Failed to update firewall sshServer ruleset status: firewall busy")
            .empty());
    EXPECT_EQ(StateText(root, "/services/SSH/running"), "true");
}

// The current value changes nothing, 0 disables, a refusing host keeps the
// dialog, and a new value takes effect without a restart (a console whose
// key-reader clock runs 30 times as fast).
TEST(Troubleshooting, ConsoleIdleTimeoutTakesEffectAtOnce) {
    SimRoot root;
    SessionOptions options = LocalConsole();
    options.program = FAST_CLOCK_CONSOLE;
    options.args = {"30"};
    ConsoleSession console(root, options);
    ASSERT_TRUE(OpenTroubleshooting(console));
    ASSERT_TRUE(GoToEntry(console, "Modify TESK idle timeout"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, kTeskDialog));
    Retype(console, "0");
    console.key(Key::Enter);
    ASSERT_TRUE(root.waitForLogLine("Disabled Tesk timeout"));
    ASSERT_TRUE(console.waitForTextGone(kTeskDialog));
    EXPECT_EQ(StateText(root, "/advancedOptions/~1UserVars~1TeskTimeOut/value"), "0");

    root.setFault("adv.setOption", {{"exception", "option store is read-only"}});
    ASSERT_TRUE(KeyThen(console, Key::Enter, kTeskDialog));
    Retype(console, "5");
    ASSERT_TRUE(KeyThen(console, Key::Enter, "option store is read-only"));
    ASSERT_TRUE(Dismiss(console, "option store is read-only"));
    ASSERT_TRUE(WaitSettled(console, kTeskDialog));
    EXPECT_EQ(StateText(root, "/advancedOptions/~1UserVars~1TeskTimeOut/value"), "0");
    EXPECT_FALSE(root.logLinesWith("Setting /UserVars/TeskTimeOut failed").empty());

    // Only digits go in: "x-1" is 1.
    root.setFault("adv.setOption", nullptr);
    Retype(console, "x-1");
    console.key(Key::Enter);
    ASSERT_TRUE(root.waitForLogLine("Modified Tesk timeout to 1 minutes"));
    ASSERT_TRUE(console.waitForTextGone(kTeskDialog));
    EXPECT_EQ(StateText(root, "/advancedOptions/~1UserVars~1TeskTimeOut/value"), "60");
    // A minute of idle time (two seconds here) now ends the session.
    ASSERT_TRUE(root.waitForLogLine("User root logged out due to time out"));
    EXPECT_TRUE(WaitWelcome(console));
}

}  // namespace
