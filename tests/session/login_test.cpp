// Logging in and out at the console: the dialogs, UTF-8 typed through to PAM,
// every PAM outcome with its records, smart-card login, and the idle logout
// (the logout records of the signals that end the console:
// tests/app/job_control_test.cpp).
#include <signal.h>

#include <algorithm>
#include <string>

#include "tests/session/session_support.h"

using namespace SessionTest;

namespace {

// "ü€" and a password with letters beyond ASCII.
const std::string kUEuro = "\xC3\xBC\xE2\x82\xAC";
const std::string kUtf8Password = "p\xC3\xA4sswort\xE2\x82\xAC";  // "pässwort€"

TEST(Login, SuccessAndLogoutAreRecordedInOrder) {
    SimRoot root;
    root.writeFile("/etc/simhost/users",
                   "root:" + TeskTest::PasswordHash(kUtf8Password) + ":success\n");
    ConsoleSession console(root, LocalConsole());
    ASSERT_TRUE(WaitWelcome(console));
    ASSERT_TRUE(KeyThen(console, FKey(2), "Authentication Required"));
    EXPECT_TRUE(console.find("Enter an authorized login name and password for"));
    EXPECT_TRUE(console.find("tesk-host01.lab.example."));
    EXPECT_TRUE(console.find("<Enter> OK  <Esc> Cancel"));
    EXPECT_FALSE(console.find("<F3>"));
    EXPECT_NE(DialogRow(console, "Login Name:").find("root"), std::string::npos);

    // UTF-8 typed reaches the field (the fresh field replaced by the first
    // character), and the password reaches PAM, one star per character.
    console.type("x" + kUEuro + "y");
    ASSERT_TRUE(console.waitForText("[ x" + kUEuro + "y "));
    console.keys({Key::Backspace, Key::Backspace, Key::Backspace, Key::Backspace});
    console.type("root");
    console.key(Key::Enter);
    console.type(kUtf8Password);
    ASSERT_TRUE(console.waitForText("[ *********  "));
    console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(console, "System Customization"));
    ASSERT_TRUE(root.waitForLogLine("User root logged in"));
    const auto lines = root.logLines();
    const auto at = [&lines](std::string_view end) {
        return std::ranges::find_if(lines,
                                    [end](const std::string& l) { return l.ends_with(end); });
    };
    EXPECT_LT(at("Authentication of user root succeeded"), at("User root logged in"));
    auto logins = AuditRecords(root, "tesk.login");
    ASSERT_EQ(logins.size(), 1u);
    EXPECT_EQ(logins[0]["user"], "root");
    EXPECT_EQ(logins[0]["application"], "tesk");
    EXPECT_EQ(logins[0]["outcome"], 1);
    EXPECT_TRUE(!logins[0].contains("data") || logins[0]["data"].empty()) << logins[0];
    // A successful login is no observation event.
    EXPECT_EQ(root.tryReadFile("/var/log/noxd.log").value_or("").find("tesk.login"),
              std::string::npos);

    // <Esc> in the menu ends the session.
    console.key(Key::Esc);
    ASSERT_TRUE(root.waitForLogLine("User root logged out"));
    ASSERT_TRUE(WaitWelcome(console));
    EXPECT_TRUE(root.logLinesWith("due to time out").empty());
    auto logouts = AuditRecords(root, "tesk.logout");
    ASSERT_EQ(logouts.size(), 1u);
    EXPECT_EQ(logouts[0]["user"], "root");
    EXPECT_EQ(logouts[0]["outcome"], 1);
    EXPECT_EQ(logouts[0]["data"], (Json{{"reason", "Session closed"}}));
    EXPECT_EQ(AllLogs(root).find(kUtf8Password), std::string::npos);
}

struct Failure {
    const char* user;
    const char* password;
    const char* message;
    const char* syslog;
    const char* reason;
    const char* event;
};

TEST(Login, EveryFailureHasItsMessageRecordsAndEvent) {
    const Failure failures[] = {
        {"noaccess", kPassword, "User does not have permission to login to TESK.",
         "Access denied for user noaccess", "No permission",
         "nox.user.tesk.login.failed Access denied for user noaccess"},
        {"expired", kPassword, "Password has expired.", "Password has expired for user expired",
         "Password expired", "nox.user.tesk.login.failed Access denied for user expired"},
        {"root", "wrong-pass", "Invalid login or password.", "Authentication of user root failed",
         "Invalid login", "nox.user.tesk.login.failed Authentication of user root failed"},
        // Two prompts in one conversation call cannot be answered.
        {"twoprompts", kPassword, "Invalid login or password.",
         "Authentication of user twoprompts failed", "Invalid login",
         "nox.user.tesk.login.failed Authentication of user twoprompts failed"},
    };
    SimRoot root;
    ConsoleSession console(root, RemoteShell());
    ASSERT_TRUE(WaitWelcome(console));
    ASSERT_TRUE(KeyThen(console, FKey(2), "Login Name:"));
    size_t n = 0;
    for (const Failure& f : failures) {
        SCOPED_TRACE(f.user);
        // After a failure the focus is on the password: back up to the name.
        if (n > 0) console.key(Key::Up);
        EnterCredentials(console, f.user, f.password);
        ASSERT_TRUE(WaitSettled(console, f.message));
        EXPECT_TRUE(console.find("Authentication failed"));
        ASSERT_TRUE(root.waitForLogLine(f.syslog));
        ASSERT_TRUE(root.waitForLogLine(f.event, TeskTest::DefaultTimeout(), "/var/log/noxd.log"));
        auto records = AuditRecords(root, "tesk.login");
        ASSERT_EQ(records.size(), ++n);
        EXPECT_EQ(records.back()["user"], f.user);
        EXPECT_EQ(records.back()["outcome"], 0);
        EXPECT_EQ(records.back()["data"], (Json{{"reason", f.reason}}));

        // Back in the login dialog, the password emptied.
        ASSERT_TRUE(Dismiss(console, f.message));
        if (std::string_view(f.user) == "expired") {
            // The password change comes first; <Esc> leaves it.
            ASSERT_TRUE(WaitSettled(console, "Old Password:"));
            ASSERT_TRUE(Dismiss(console, "Old Password:", Key::Esc));
        }
        ASSERT_TRUE(WaitSettled(console, "Password:"));
        EXPECT_EQ(DialogRow(console, "Password:").find('*'), std::string::npos)
            << DialogRow(console, "Password:");
    }
    EXPECT_FALSE(root.hasLogLine("logged in"));
    const std::string logs = AllLogs(root);
    EXPECT_EQ(logs.find(kPassword), std::string::npos);
    EXPECT_EQ(logs.find("wrong-pass"), std::string::npos);

    // The failures did not wear the dialog out: the right password still works.
    console.key(Key::Up);
    EnterCredentials(console, "root", kPassword);
    EXPECT_TRUE(console.waitForText("System Customization"));
}

TEST(Login, SmartCardLoginEndsWhenTheCardIsPulled) {
    SimRoot root;
    ConsoleSession console(root, RemoteShell());
    ASSERT_TRUE(WaitWelcome(console));
    root.editState([](Json& s) {
        s["smartCards"]["slots"][0]["token"] = {{"userIds", {"", "root"}}};
    });
    console.signal(SIGUSR1);
    ASSERT_TRUE(root.waitForLogLine("Found smart card with user id 'root'"));

    ASSERT_TRUE(KeyThen(console, FKey(2), "Login Id:"));
    EXPECT_NE(DialogRow(console, "Login Id:").find("root"), std::string::npos);
    EXPECT_TRUE(console.find("PIN:"));
    EXPECT_TRUE(console.find("Enter the smart card login PIN for"));
    // The id came from the card: the PIN is what is typed.
    console.type(kPassword);
    console.key(Key::Enter);
    ASSERT_TRUE(console.waitForText("System Customization"));
    ASSERT_TRUE(root.waitForLogLine("User root logged in"));

    root.editState([](Json& s) { s["smartCards"]["slots"][0]["token"] = nullptr; });
    console.signal(SIGUSR1);
    EXPECT_EQ(console.waitExit(), ExitStatus::Exited(0));
    EXPECT_TRUE(root.hasLogLine("Logging out user id 'root'"));
    // The session's end is recorded like a logout.
    EXPECT_TRUE(root.hasLogLine("User root logged out"));
    EXPECT_EQ(AuditRecords(root, "tesk.logout").size(), 1u);
}

TEST(Logout, IdleTimeoutEndsTheSessionWithItsOwnRecords) {
    SimRoot root;
    root.editState([](Json& s) {
        s["advancedOptions"]["/UserVars/TeskTimeOut"] = {{"type", "integer"}, {"value", 60}};
    });
    // The console with a key-reader clock 30 times as fast: a minute in two seconds.
    SessionOptions options = RemoteShell();
    options.program = FAST_CLOCK_CONSOLE;
    options.args = {"30"};
    ConsoleSession console(root, options);
    ASSERT_TRUE(LogIn(console));
    ASSERT_TRUE(root.waitForLogLine("User root logged out due to time out"));
    ASSERT_TRUE(WaitWelcome(console));
    EXPECT_EQ(root.logLinesWith("User root logged out").size(), 1u);  // the time-out line
    auto logouts = AuditRecords(root, "tesk.logout");
    ASSERT_EQ(logouts.size(), 1u);
    EXPECT_EQ(logouts[0]["user"], "root");
    EXPECT_EQ(logouts[0]["outcome"], 1);
    EXPECT_EQ(logouts[0]["data"], (Json{{"reason", "Time out"}}));

    // The welcome screen takes keys again: another session starts.
    ASSERT_TRUE(LogIn(console));
    EXPECT_EQ(root.logLinesWith("User root logged in").size(), 2u);
}

}  // namespace
