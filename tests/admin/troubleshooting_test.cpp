// The troubleshooting options: the shell and SSH switches with their
// fallbacks and the firewall, the timeouts item that follows both services,
// the two timeout dialogs' range checks and writes, and the console's idle
// timeout taking effect at once.
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

// Replaces a field's value: rubs out what is there, types the new text.
void Retype(ConsoleSession& console, std::string_view text) {
    for (int i = 0; i < 14; ++i) console.key(Key::Backspace);
    console.type(text);
}

void ServicesOn(const SimRoot& root, bool shell, bool ssh) {
    root.editState([&](Json& s) {
        s["services"]["KovaShell"] = {{"running", shell}, {"enabled", shell}};
        s["services"]["SSH"] = {{"running", ssh}, {"enabled", ssh}};
    });
}

TEST(Troubleshooting, TimeoutsItemOnlyWhileShellAndSshAreOff) {
    SimRoot root;
    ServicesOn(root, true, true);
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(OpenTroubleshooting(console));
    EXPECT_TRUE(console.find("Disable Kovix Shell"));
    EXPECT_TRUE(console.find("Disable SSH"));
    EXPECT_TRUE(console.find("Kovix Shell is Enabled"));

    // The shell off, SSH still on: the timeouts stay out of reach.
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Enable Kovix Shell"));
    EXPECT_TRUE(console.find("Kovix Shell is Disabled"));
    EXPECT_EQ(StateText(root, "/services/KovaShell/running"), "false");
    EXPECT_EQ(StateText(root, "/services/KovaShell/enabled"), "false");
    EXPECT_FALSE(root.logLinesWith("User root disabled Kovix Shell").empty());
    ASSERT_TRUE(StepSelection(console));
    EXPECT_TRUE(PaneHeading(console).starts_with("SSH Support"));
    ASSERT_TRUE(StepSelection(console));
    EXPECT_TRUE(PaneHeading(console).starts_with("Modify TESK idle timeout"));

    // SSH off as well: the item can be chosen.
    ASSERT_TRUE(StepSelection(console, Key::Up));
    EXPECT_TRUE(PaneHeading(console).starts_with("SSH Support"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Enable SSH"));
    EXPECT_EQ(StateText(root, "/services/SSH/running"), "false");
    EXPECT_FALSE(root.logLinesWith("User root disabled SSH").empty());
    ASSERT_TRUE(StepSelection(console));
    EXPECT_TRUE(PaneHeading(console).starts_with("Modify Kovix Shell and SSH timeouts"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Availability timeout"));
}

TEST(Troubleshooting, SshSwitchOpensTheFirewallOnlyWhenSwitchedOn) {
    SimRoot root;
    ServicesOn(root, false, false);
    root.editState([](Json& s) {
        s["systemInfo"]["firewall"]["rulesets"] = {{{"id", "sshServer"},
                                                    {"enabled", false},
                                                    {"serviceControlled", true},
                                                    {"active", false}}};
    });
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(OpenTroubleshooting(console));
    ASSERT_TRUE(GoToEntry(console, "SSH Support"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Disable SSH"));
    EXPECT_EQ(StateText(root, "/services/SSH/running"), "true");
    EXPECT_EQ(StateText(root, "/systemInfo/firewall/rulesets/0/enabled"), "true");
    EXPECT_EQ(StateText(root, "/systemInfo/firewall/rulesets/0/active"), "true");

    // Switching off leaves the ruleset alone.
    root.editState([](Json& s) {
        s["systemInfo"]["firewall"]["rulesets"][0]["enabled"] = false;
        s["systemInfo"]["firewall"]["rulesets"][0]["active"] = false;
    });
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Enable SSH"));
    EXPECT_EQ(StateText(root, "/systemInfo/firewall/rulesets/0/enabled"), "false");

    // The management tool fails: the init script starts the service; a
    // firewall failure is logged and the switch goes on.
    root.setFault("rux-cmd:hostsvc/start_ssh", {{"exitStatus", 1}});
    root.setFault("firewall.isServiceControlled", {{"exception", "firewall busy"}});
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Disable SSH"));
    EXPECT_FALSE(root.logLinesWith("Unable to run rux-cmd to start/stop ssh").empty());
    EXPECT_FALSE(
        root.logLinesWith("Failed to update firewall sshServer ruleset status: firewall busy")
            .empty());
    EXPECT_EQ(StateText(root, "/services/SSH/running"), "true");
}

TEST(Troubleshooting, ShellTimeoutsAreRangeCheckedAndWritten) {
    SimRoot root;
    ServicesOn(root, false, false);
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(OpenTroubleshooting(console));
    ASSERT_TRUE(GoToEntry(console, "Modify Kovix Shell and SSH timeouts"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Availability timeout"));

    for (const char* bad : {"1441", "-1"}) {
        SCOPED_TRACE(bad);
        Retype(console, bad);
        ASSERT_TRUE(
            KeyThen(console, Key::Enter, "Timeout value must be between 0 (disabled) and 1440"));
        ASSERT_TRUE(Dismiss(console, "Timeout value must be between"));
        EXPECT_EQ(StateText(root, "/advancedOptions/~1UserVars~1KovixShellTimeOut/value"), "0");
    }
    // 1440 is taken; the idle field keeps its current value: nothing for it.
    ASSERT_TRUE(WaitSettled(console, "Availability timeout"));
    Retype(console, "1440");
    console.key(Key::Enter);
    ASSERT_TRUE(root.waitForLogLine("Modified Shell timeout to 1440 minutes"));
    ASSERT_TRUE(console.waitForTextGone("Availability timeout"));
    EXPECT_EQ(StateText(root, "/advancedOptions/~1UserVars~1KovixShellTimeOut/value"), "86400");
    EXPECT_FALSE(root.logLinesWith("Modified Shell timeout to 1440 minutes").empty());
    EXPECT_TRUE(root.logLinesWith("shell interactive timeout").empty());

    // Again: the stored value is shown; 0 disables the idle timeout... which
    // already is 0, so nothing changes; the availability goes back to 0.
    ASSERT_TRUE(WaitSettled(console, "<Esc> Exit"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Availability timeout"));
    EXPECT_TRUE(console.find("1440"));
    Retype(console, "0");
    console.key(Key::Enter);
    ASSERT_TRUE(root.waitForLogLine("Disabled Shell timeout"));
    ASSERT_TRUE(console.waitForTextGone("Availability timeout"));
    EXPECT_EQ(StateText(root, "/advancedOptions/~1UserVars~1KovixShellTimeOut/value"), "0");
    EXPECT_FALSE(root.logLinesWith("Disabled Shell timeout").empty());
    EXPECT_TRUE(root.logLinesWith("shell interactive timeout").empty());
}

TEST(Troubleshooting, ShellTimeoutFallsBackToTheLocalToolAndRestartsRunningServices) {
    SimRoot root;
    ServicesOn(root, false, false);
    root.setFault("kovacli", {{"exitStatus", 1}});
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(OpenTroubleshooting(console));
    ASSERT_TRUE(GoToEntry(console, "Modify Kovix Shell and SSH timeouts"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Availability timeout"));
    // A service that runs takes the new value by a restart (the window's
    // view of it was read when it opened).
    root.editState([](Json& s) { s["services"]["SSH"]["running"] = true; });
    Retype(console, "30");
    console.key(Key::Enter);
    ASSERT_TRUE(root.waitForLogLine("Modified Shell timeout to 30 minutes"));
    ASSERT_TRUE(console.waitForTextGone("Availability timeout"));
    EXPECT_EQ(StateText(root, "/advancedOptions/~1UserVars~1KovixShellTimeOut/value"), "1800");
    EXPECT_EQ(StateText(root, "/services/SSH/restarts"), "1");
    EXPECT_EQ(StateText(root, "/services/KovaShell/restarts"), "");
}

// The console's own idle timeout is stored and takes effect without a restart
// (a console whose key-reader clock runs 30 times as fast).
TEST(Troubleshooting, ConsoleIdleTimeoutTakesEffectAtOnce) {
    SimRoot root;
    SessionOptions options = LocalConsole();
    options.program = FAST_CLOCK_CONSOLE;
    options.args = {"30"};
    ConsoleSession console(root, options);
    ASSERT_TRUE(OpenTroubleshooting(console));
    ASSERT_TRUE(GoToEntry(console, "Modify TESK idle timeout"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, kTeskDialog));
    // Only digits go in: "-" and letters are refused, so "-1" is 1.
    Retype(console, "1441");
    ASSERT_TRUE(
        KeyThen(console, Key::Enter, "Timeout value must be between 0 (disabled) and 1440"));
    ASSERT_TRUE(Dismiss(console, "Timeout value must be between"));
    ASSERT_TRUE(WaitSettled(console, kTeskDialog));
    Retype(console, "x-1");
    console.key(Key::Enter);
    ASSERT_TRUE(root.waitForLogLine("Modified Tesk timeout to 1 minutes"));
    ASSERT_TRUE(console.waitForTextGone(kTeskDialog));
    EXPECT_EQ(StateText(root, "/advancedOptions/~1UserVars~1TeskTimeOut/value"), "60");
    EXPECT_FALSE(root.logLinesWith("Modified Tesk timeout to 1 minutes").empty());
    // A minute of idle time (two seconds here) now ends the session.
    ASSERT_TRUE(root.waitForLogLine("User root logged out due to time out"));
    EXPECT_TRUE(WaitWelcome(console));
}

TEST(Troubleshooting, ConsoleIdleTimeoutZeroDisables) {
    SimRoot root;
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(OpenTroubleshooting(console));
    ASSERT_TRUE(GoToEntry(console, "Modify TESK idle timeout"));
    ASSERT_TRUE(KeyThen(console, Key::Enter, kTeskDialog));
    // The current value changes nothing.
    ASSERT_TRUE(Dismiss(console, kTeskDialog));
    EXPECT_TRUE(root.logLinesWith("Tesk timeout").empty());
    ASSERT_TRUE(KeyThen(console, Key::Enter, kTeskDialog));
    Retype(console, "0");
    console.key(Key::Enter);
    ASSERT_TRUE(root.waitForLogLine("Disabled Tesk timeout"));
    ASSERT_TRUE(console.waitForTextGone(kTeskDialog));
    EXPECT_EQ(StateText(root, "/advancedOptions/~1UserVars~1TeskTimeOut/value"), "0");
    EXPECT_FALSE(root.logLinesWith("Disabled Tesk timeout").empty());

    // A host that refuses the option: its message, and the dialog stays.
    root.setFault("adv.setOption", {{"exception", "option store is read-only"}});
    ASSERT_TRUE(KeyThen(console, Key::Enter, kTeskDialog));
    Retype(console, "5");
    ASSERT_TRUE(KeyThen(console, Key::Enter, "option store is read-only"));
    ASSERT_TRUE(Dismiss(console, "option store is read-only"));
    ASSERT_TRUE(WaitSettled(console, kTeskDialog));
    EXPECT_EQ(StateText(root, "/advancedOptions/~1UserVars~1TeskTimeOut/value"), "0");
    EXPECT_FALSE(root.logLinesWith("Setting /UserVars/TeskTimeOut failed").empty());
    ASSERT_TRUE(Dismiss(console, kTeskDialog, Key::Esc));
}

}  // namespace
