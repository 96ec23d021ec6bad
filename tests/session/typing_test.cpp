// Typing into the login dialog as a user sees it: UTF-8 characters arrive
// whole and reach PAM as typed.
#include <string>

#include "tests/session/session_support.h"

using namespace SessionTest;

namespace {

// "ü€" and a password with letters beyond ASCII.
const std::string kUEuro = "\xC3\xBC\xE2\x82\xAC";
const std::string kUtf8Password = "p\xC3\xA4sswort\xE2\x82\xAC";  // "pässwort€"

TEST(Typing, Utf8CharactersReachTheFieldAndPam) {
    SimRoot root;
    root.writeFile("/etc/simhost/users", "root:" + kUtf8Password + ":success\n");
    ConsoleSession console(root, RemoteShell());
    ASSERT_TRUE(WaitWelcome(console));
    console.key(FKey(2));
    ASSERT_TRUE(WaitSettled(console, "Login Name:"));
    // The fresh login field is replaced by the first character typed.
    console.type("x");
    console.type(kUEuro);
    console.type("y");
    ASSERT_TRUE(console.waitForText("[ x" + kUEuro + "y "));

    // Back to "root", then the UTF-8 password (shown as one star per
    // character) through PAM to the simulated host's users.
    console.keys({Key::Backspace, Key::Backspace, Key::Backspace, Key::Backspace});
    console.type("root");
    console.key(Key::Enter);
    console.type(kUtf8Password);
    ASSERT_TRUE(console.waitForText("[ *********  "));
    console.key(Key::Enter);
    EXPECT_TRUE(root.waitForLogLine("User root logged in"));
    EXPECT_TRUE(console.waitForText("System Customization"));
}

}  // namespace
