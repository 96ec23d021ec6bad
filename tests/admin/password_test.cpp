// The password dialog: the old password checked, the new one typed twice, the
// failures and their emptied fields, the same-password question, what a
// change stores (or fails to store), and the expired password changed at
// login.
#include <string>

#include "tests/admin/admin_support.h"

using namespace AdminTest;

namespace {

constexpr char kOld[] = "Old Password:";
constexpr char kNew[] = "New Password:";
constexpr char kConfirm[] = "Confirm Password:";
constexpr char kChanged[] = "Login password for user root has changed";

// The number of mask characters shown in the field of label.
int Stars(ConsoleSession& console, std::string_view label) {
    const int row = RowOf(console, label);
    if (row < 0) return -1;
    int stars = 0;
    for (char c : console.row(row)) stars += c == '*';
    return stars;
}

// root's line of the PAM user file, which alone keeps the password hashes.
std::string RootAccount(const SimRoot& root) {
    const std::string users = root.readFile("/etc/simhost/users");
    const auto start = users.find("root:");
    return start == std::string::npos ? "" : users.substr(start, users.find('\n', start) - start);
}

// Waits for a message and closes it with <Enter>.
bool Acknowledge(ConsoleSession& console, std::string_view message,
                 std::source_location where = std::source_location::current()) {
    return WaitSettled(console, message, where) && Dismiss(console, message, Key::Enter, where);
}

// Types text into the focused field and presses key.
void Enter(ConsoleSession& console, std::string_view text, std::string_view key = Key::Enter) {
    console.type(text);
    console.key(key);
}

// From the menu through the whole dialog: old, new, new again.
bool ChangeTo(ConsoleSession& console, const std::string& old, const std::string& fresh) {
    console.key(Key::Enter);
    if (!WaitCaretOn(console, kOld)) return false;
    Enter(console, old);
    if (!WaitCaretOn(console, kNew)) return false;
    Enter(console, fresh);
    if (!WaitCaretOn(console, kConfirm)) return false;
    Enter(console, fresh);
    return true;
}

// The failures first (each with its message and emptied fields, nothing
// changed), then changes: asked about, stored and announced.
TEST(Password, FailuresChangeNothingAndChangesAreAskedAboutStoredAndAnnounced) {
    SimRoot root;
    const std::string hash = RootAccount(root);
    ConsoleSession console(root, RemoteShell());
    ASSERT_TRUE(OpenEntry(console, "Configure Password", kOld));
    ASSERT_TRUE(WaitCaretOn(console, kOld));

    // A long pasted text is just a wrong password.
    Enter(console, std::string(400, 'x'));
    ASSERT_TRUE(Acknowledge(console, "The old password you entered is incorrect"));
    EXPECT_EQ(Stars(console, kOld), 0);
    EXPECT_EQ(CaretRow(console), RowOf(console, kOld));

    Enter(console, kPassword, Key::Down);
    ASSERT_TRUE(WaitCaretOn(console, kNew));
    // Up does not go back from the new password: the text lands there.
    console.key(Key::Up);
    Enter(console, "abc1234");
    ASSERT_TRUE(WaitCaretOn(console, kConfirm));
    EXPECT_EQ(Stars(console, kOld), 9);
    EXPECT_EQ(Stars(console, kNew), 7);

    Enter(console, "abc1235");
    ASSERT_TRUE(Acknowledge(console, "The new password and the confirmed password do not match."));
    EXPECT_EQ(Stars(console, kNew), 0);
    EXPECT_EQ(Stars(console, kConfirm), 0);
    EXPECT_EQ(Stars(console, kOld), 9);

    console.key(Key::Enter);
    ASSERT_TRUE(Acknowledge(console, "Empty passwords are not allowed."));

    // Long enough, one kind of character: the host refuses it.
    console.key(Key::Up);
    ASSERT_TRUE(WaitCaretOn(console, kNew));
    Enter(console, "abcdefgh");
    ASSERT_TRUE(WaitCaretOn(console, kConfirm));
    Enter(console, "abcdefgh");
    ASSERT_TRUE(WaitSettled(console, "The password change operation failed."));
    EXPECT_TRUE(console.find("complexity criteria")) << "both lines of the message";
    ASSERT_TRUE(Acknowledge(console, "The password change operation failed."));
    EXPECT_EQ(Stars(console, kNew), 0);
    EXPECT_EQ(Stars(console, kConfirm), 0);

    ASSERT_TRUE(Dismiss(console, kOld, Key::Esc));
    EXPECT_EQ(RootAccount(root), hash);
    EXPECT_FALSE(root.stateValue("/configBackup/runs"));

    // The same password again is asked about; <Esc> goes back to the
    // confirmation with every field kept.
    ASSERT_TRUE(WaitSettled(console, "<Esc> Log Out"));
    ASSERT_TRUE(ChangeTo(console, kPassword, kPassword));
    ASSERT_TRUE(WaitSettled(console, "New password is same as old password. Are you sure?"));
    ASSERT_TRUE(Dismiss(console, "Are you sure?", Key::Esc));
    ASSERT_TRUE(WaitCaretOn(console, kConfirm));
    for (const char* label : {kOld, kNew, kConfirm}) EXPECT_EQ(Stars(console, label), 9) << label;
    EXPECT_FALSE(root.hasLogLine("has changed"));
    console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(console, "Are you sure?"));
    console.key(Key::Enter);
    ASSERT_TRUE(root.waitForLogLine(kChanged));
    ASSERT_TRUE(console.waitForTextGone(kOld));

    ASSERT_TRUE(WaitSettled(console, "<Esc> Log Out"));
    ASSERT_TRUE(ChangeTo(console, kPassword, "N3w-pass"));
    ASSERT_TRUE(console.waitForTextGone(kOld));
    ASSERT_TRUE(console.waitFor([&] { return root.logLinesWith(kChanged).size() == 2u; },
                                "the change logged"));
    EXPECT_EQ(root.stateValue("/userAccountStore/storeCount"), Json(2));
    EXPECT_EQ(root.stateValue("/configBackup/runs"), Json(2));
    EXPECT_EQ(root.stateValue("/configBackup/lastArgument"), Json("0"));
    const Json requests = root.stateValue("/hostAgent/requests").value_or(Json::array());
    EXPECT_NE(std::find(requests.begin(), requests.end(),
                        Json{{"user", "root"}, {"command", "internalsvc/refresh"}, {"status", 0}}),
              requests.end())
        << requests;
    EXPECT_NE(RootAccount(root), hash);
    EXPECT_FALSE(root.stateValue("/users/0/passwordHash"));
    EXPECT_EQ(root.state().dump().find("N3w-pass"), std::string::npos);
    EXPECT_EQ(root.readFile("/etc/simhost/users").find("N3w-pass"), std::string::npos);

    // Accounts that cannot be stored are reported; the rest goes on.
    root.setFault("authentication.storeUserAccountsToCs", {{"exception", "store is read-only"}});
    ASSERT_TRUE(WaitSettled(console, "<Esc> Log Out"));
    ASSERT_TRUE(ChangeTo(console, "N3w-pass", "N3w-pass2"));
    ASSERT_TRUE(Acknowledge(console, "Error while storing user account information"));
    EXPECT_TRUE(root.hasLogLine("store is read-only"));
    EXPECT_TRUE(console.waitForTextGone(kOld));
    EXPECT_TRUE(console.waitFor([&] { return root.logLinesWith(kChanged).size() == 3u; },
                                "the change logged"));
    EXPECT_EQ(root.stateValue("/configBackup/runs"), Json(3));
}

TEST(Password, AnExpiredPasswordIsChangedAtLoginThenTheUserLogsIn) {
    SimRoot root;
    ConsoleSession console(root, RemoteShell());
    ASSERT_TRUE(WaitWelcome(console));
    console.key(FKey(2));
    ASSERT_TRUE(WaitSettled(console, "Login Name:"));
    EnterCredentials(console, "expired", kPassword);
    ASSERT_TRUE(Acknowledge(console, "Password has expired."));
    // The expired password is the right old one.
    ASSERT_TRUE(WaitCaretOn(console, kOld));
    Enter(console, kPassword);
    ASSERT_TRUE(WaitCaretOn(console, kNew));
    Enter(console, "Fresh-pw1");
    ASSERT_TRUE(WaitCaretOn(console, kConfirm));
    Enter(console, "Fresh-pw1");
    ASSERT_TRUE(root.waitForLogLine("Login password for user expired has changed"));
    ASSERT_TRUE(console.waitForTextGone(kOld));

    // Back in the login dialog, on the emptied password.
    ASSERT_TRUE(WaitCaretOn(console, "Password:"));
    Enter(console, "Fresh-pw1");
    EXPECT_TRUE(root.waitForLogLine("User expired logged in"));
    EXPECT_TRUE(console.waitForText("System Customization"));
}

}  // namespace
