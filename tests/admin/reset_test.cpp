// Resetting the system configuration from the customization menu: the <F11>
// confirmation, the host command, the screen that only <Enter> leaves, the
// restart, and a failing command.
#include "tests/admin/admin_support.h"

using namespace AdminTest;

namespace {

bool OpenReset(ConsoleSession& console, const std::string& entry) {
    return OpenEntry(console, entry, entry + ": Confirm");
}

TEST(Reset, RestoresTheProfileKeepsTheMachineAndRestartsAfterAFailedAttempt) {
    SimRoot root;
    // Settings an administrator changed, and the machine's own identity.
    root.editState([](Json& s) {
        s["advancedOptions"]["/UserVars/TeskTimeOut"]["value"] = 1200;
        s["network"]["dns"]["hostname"] = "changed-name";
        s["network"]["pnics"][0]["mac"] = "02:00:00:00:00:99";
        s["services"]["SSH"] = {{"running", true}, {"enabled", true}};
    });
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
    // Only <F11> goes on.
    console.key(Key::Enter);
    EXPECT_TRUE(console.waitForQuiet());
    EXPECT_TRUE(console.find("Reset System Configuration now?"));
    EXPECT_EQ(StateText(root, "/factoryConfig/resets"), "");

    console.key(FKey(11));
    ASSERT_TRUE(WaitSettled(console, "Default settings are restored."));
    EXPECT_TRUE(console.find("<Enter> Restart Host"));
    EXPECT_EQ(StateText(root, "/factoryConfig/resets"), "1");
    EXPECT_EQ(StateText(root, "/advancedOptions/~1UserVars~1TeskTimeOut/value"), "600");
    EXPECT_EQ(StateText(root, "/network/dns/hostname"), "tesk-host01");
    EXPECT_EQ(StateText(root, "/services/SSH/enabled"), "false");
    EXPECT_EQ(StateText(root, "/network/pnics/0/mac"), "02:00:00:00:00:99");
    EXPECT_FALSE(root.logLinesWith("Restoring factory defaults").empty());
    EXPECT_FALSE(
        root.logLinesWith("nox.user.tesk.restore.factory.defaults", "/var/log/noxd.log").empty());

    // The host must restart: <Esc> does nothing.
    console.key(Key::Esc);
    // Apart, so that the two keys are not read as one escape sequence.
    std::this_thread::sleep_for(TeskTest::Scaled(std::chrono::milliseconds(300)));
    EXPECT_TRUE(console.find("Default settings are restored."));
    console.key(Key::Enter);
    EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
    EXPECT_EQ(StateText(root, "/power/lastCommand"), "reboot -f");
}

}  // namespace
