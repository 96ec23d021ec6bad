// The console in the lab (run through scripts/lab.sh, with the installed
// management network), walked as an administrator would: the root password
// changed through the lab's PAM stack and used for the next login, the
// management network restarted, the logs entry of a host without logs, and
// the system configuration reset: the console's files gone and logind asked
// to reboot.
#include <filesystem>

#include "tests/admin/admin_support.h"
#include "tests/harness/lab_environment.h"

using namespace AdminTest;
using namespace TeskTest;

namespace {

constexpr char kNewPassword[] = "Lab-Pass-42";

bool Has(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

// Old, new and new again, each once its field has the caret.
bool ChangePassword(ConsoleSession& console, const std::string& old, const std::string& fresh) {
    for (const auto& [label, text] : {std::pair{"Old Password:", old},
                                      {"New Password:", fresh},
                                      {"Confirm Password:", fresh}}) {
        if (!WaitCaretOn(console, label)) return false;
        console.type(text);
        console.key(Key::Enter);
    }
    return true;
}

TEST(LabAdmin, PasswordRestartNetworkAndReset) {
    if (Env("LAB_DIR").empty()) GTEST_SKIP() << "needs the lab (scripts/lab.sh)";
    const std::string root = Env("TESK_ROOT");
    SessionOptions options = LocalConsole();
    TeskTest::PassLabEnvironment(options);
    ConsoleSession console(options);
    // The management bridge has its lease: the network entries are usable.
    ASSERT_TRUE(console.waitForText("(DHCP)", TeskTest::Scaled(std::chrono::seconds(60))));

    ASSERT_TRUE(OpenEntry(console, "Configure Password", "Old Password:"));
    ASSERT_TRUE(ChangePassword(console, kPassword, kNewPassword));
    ASSERT_TRUE(
        console.waitFor([] { return Has(LabLog(), "Login password for user root has changed"); },
                        "the password changed"));
    EXPECT_EQ(ReadFile(Env("LAB_DIR") + "/pam/passdb"),
              std::string("root:") + kNewPassword + ":tesk\n");
    // Logged out, the new password logs in.
    ASSERT_TRUE(console.waitForTextGone("Old Password:"));
    ASSERT_TRUE(WaitSettled(console, "<Esc> Log Out"));
    ASSERT_TRUE(Dismiss(console, "<Esc> Log Out", Key::Esc));
    ASSERT_TRUE(LogIn(console, "root", kNewPassword)) << console.dump();

    ASSERT_TRUE(
        OpenSelected(console, "Restart Management Network", "Restart management network now?"));
    console.key(FKey(11));
    ASSERT_TRUE(WaitSettled(console, "Starting management network."));
    ASSERT_TRUE(WaitSettled(console, "<Enter> OK"));
    const std::string log = LabLog();
    EXPECT_TRUE(Has(log, "Taking br0 down") && Has(log, "Taking br0 up")) << log;
    ASSERT_TRUE(Dismiss(console, "Starting management network."));

    const std::string ours = root + "/etc/systemd/network/60-tesk-br0.network";
    ASSERT_TRUE(std::filesystem::exists(ours));
    // The lab's host keeps no journal and no plain log yet: the pane says so.
    ASSERT_TRUE(GoToEntry(console, "View System Logs"));
    EXPECT_TRUE(WaitSettled(console, "No logs that the console can show"));

    // The pane says what the reset does here: the password and machines stay.
    ASSERT_TRUE(GoToEntry(console, "Reset System Configuration"));
    const std::string pane = PaneWithoutBlanks(console);
    EXPECT_TRUE(Has(pane, "virtualmachinesstayastheyare.") && !Has(pane, "unregistered")) << pane;
    console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(console, "Reset System Configuration now?"));
    console.key(FKey(11));
    ASSERT_TRUE(WaitSettled(console, "Default settings are restored."));
    EXPECT_FALSE(std::filesystem::exists(ours));
    EXPECT_FALSE(std::filesystem::exists(root + "/etc/tesk/linux-host.conf"));
    console.key(Key::Enter);
    EXPECT_TRUE(
        console.waitFor([] { return Has(ReadFile(Env("LAB_LOGIND_CALLS")), "Reboot False"); },
                        "logind asked to reboot"));
}

}  // namespace
