// Resetting the system configuration from the customization menu: the <F11>
// confirmation, the host command, the restart from its last screen, and a
// failing command.
#include "tests/admin/admin_support.h"

using namespace AdminTest;

namespace {

bool OpenReset(ConsoleSession& console, const std::string& entry) {
    return OpenEntry(console, entry, entry + ": Confirm");
}

TEST(Reset, RunsTheHostsResetAndRestartsAfterAFailedAttempt) {
    SimRoot root;
    // The first attempt's command fails: back in the menu without a word.
    root.setFault("factoryConfig.py", {{"exitStatus", 1}});
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(OpenReset(console, "Reset System Configuration"));
    ASSERT_TRUE(Dismiss(console, "Reset System Configuration: Confirm", FKey(11)));
    ASSERT_TRUE(WaitSettled(console, "<Esc> Log Out"));
    EXPECT_FALSE(console.find("Default settings are restored."));
    EXPECT_FALSE(root.logLinesWith("Restoring factory defaults").empty());
    EXPECT_EQ(StateText(root, "/power/reboots"), "");

    root.setFault("factoryConfig.py", nullptr);
    ASSERT_TRUE(KeyThen(console, Key::Enter, "Reset System Configuration now?"));
    console.key(FKey(11));
    ASSERT_TRUE(WaitSettled(console, "Default settings are restored."));
    EXPECT_TRUE(console.find("<Enter> Restart Host"));
    // What a reset restores is the host's own business.
    EXPECT_EQ(StateText(root, "/factoryConfig/resets"), "1");
    EXPECT_FALSE(root.logLinesWith("Restoring factory defaults").empty());
    EXPECT_FALSE(
        root.logLinesWith("nox.user.tesk.restore.factory.defaults", "/var/log/noxd.log").empty());

    console.key(Key::Enter);
    EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
    EXPECT_EQ(StateText(root, "/power/lastCommand"), "reboot -f");
}

}  // namespace
