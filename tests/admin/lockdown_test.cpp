// The lockdown dialog: only a changed check runs a command, entering and
// leaving lockdown change the host, a failing command is logged with the
// tool's error and changes nothing.
#include <string>

#include "tests/admin/admin_support.h"

using namespace AdminTest;

namespace {

constexpr char kEntry[] = "Configure Lockdown Mode";
constexpr char kCheck[] = "Enable lockdown mode";

// The lockdown commands the management tool was asked to run.
int SwitchRequests(const SimRoot& root) {
    int count = 0;
    for (const auto& request : root.stateValue("/hostAgent/requests").value_or(Json::array()))
        count += request.value("command", "").starts_with("ruxsvc/auth/lockdown_mode_");
    return count;
}

bool Lockdown(const SimRoot& root) {
    return StateText(root, "/lockdown/enabled") == "true";
}

// Space on the check item, waiting until it shows the new mark.
bool Toggle(ConsoleSession& console) {
    const bool was = console.find("[X] " + std::string(kCheck)).has_value();
    console.key(" ");
    return console.waitForText((was ? "[ ] " : "[X] ") + std::string(kCheck));
}

// <Enter> in the dialog, back in the menu with the pane read again.
bool Apply(ConsoleSession& console) {
    console.key(Key::Enter);
    return console.waitForTextGone(kCheck) && WaitSettled(console, "<Esc> Log Out");
}

// One walk: a check toggled twice runs nothing, a failing command is logged
// with the tool's error and changes nothing, then entering and leaving change
// the host.
TEST(Lockdown, EnteringAndLeavingChangeTheHost) {
    SimRoot root;
    root.setFault("rux-cmd:ruxsvc/auth/lockdown_mode_enter",
                  {{"error", "Agent busy:\n try later\n"}, {"exitStatus", 3}});
    ConsoleSession console(root, RemoteShell());
    ASSERT_TRUE(OpenEntry(console, kEntry, kCheck));
    ASSERT_TRUE(console.find("[ ] " + std::string(kCheck)));
    ASSERT_TRUE(Toggle(console));
    ASSERT_TRUE(Toggle(console));
    ASSERT_TRUE(Apply(console));
    EXPECT_EQ(SwitchRequests(root), 0);

    console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(console, kCheck));
    ASSERT_TRUE(Toggle(console));
    ASSERT_TRUE(Apply(console));
    EXPECT_TRUE(
        root.waitForLogLine("Enabling lockdown mode failed with error: Agent busy: try later"));
    EXPECT_FALSE(Lockdown(root));
    EXPECT_TRUE(console.waitForText("Disabled"));
    EXPECT_FALSE(root.hasLogLine("Lockdown mode enabled"));

    root.setFault("rux-cmd:ruxsvc/auth/lockdown_mode_enter", nullptr);
    console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(console, kCheck));
    ASSERT_TRUE(Toggle(console));
    ASSERT_TRUE(Apply(console));
    EXPECT_TRUE(root.waitForLogLine("Lockdown mode enabled"));
    EXPECT_TRUE(Lockdown(root));
    EXPECT_TRUE(console.waitForText("Enabled"));

    // The dialog starts from the host's state.
    console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(console, "[X] " + std::string(kCheck)));
    ASSERT_TRUE(Toggle(console));
    ASSERT_TRUE(Apply(console));
    EXPECT_TRUE(root.waitForLogLine("Lockdown mode disabled"));
    EXPECT_FALSE(Lockdown(root));
    EXPECT_TRUE(console.waitForText("Disabled"));
    EXPECT_EQ(SwitchRequests(root), 2);  // the host keeps no failed request
}

}  // namespace
