// Host values that look like markup are shown as the text they are, on every
// screen that shows host data: the welcome screen, the login dialog, the
// menu's panes.
#include <string>

#include "tests/session/robustness_steps.h"
#include "ui/markup.h"
#include "ui/markup_escape.h"

using namespace SessionTest;

namespace {

constexpr int kCols = 100, kRows = 30;

TEST(HostText, EscapingKeepsTextAndLines) {
    EXPECT_EQ(Tesk::EscapeHostText("{color:red}x{/color}"), "{{}color:red}x{{}/color}");
    EXPECT_EQ(Tesk::EscapeHostText("a\nb\tc\x1b[31m\x7f"), "a b c [31m ");
    EXPECT_EQ(Tesk::EscapeHostLines("one {x}\ntwo\r\n"), "one {{}x}\ntwo \n");
    // Laid out, the escaped text takes exactly the columns of the original.
    const std::string host = "{color:red}x{align:right}{ip}";
    EXPECT_EQ(Tesk::LayoutMarkup(Tesk::EscapeHostText(host), 80),
              "{{}color:red}x{{}align:right}{{}ip}");
    EXPECT_EQ(Tesk::EscapeHostText(""), "");
    // A host name of braces once turned the rest of its text into one endless tag.
    EXPECT_EQ(Tesk::LayoutMarkup(Tesk::EscapeHostText("{{{") + " tail", 80), "{{}{{}{{} tail");
}

TEST(HostText, MarkupInHostValuesShowsAsText) {
    SimRoot root;
    root.editState([](Json& s) {
        s["network"]["dns"]["hostname"] = "{color:red}x{align:right}";
        s["network"]["dns"]["domain"] = "{bgcolor:white}d";
        s["hardware"]["vendor"] = "{color:red}Vendor";
        s["hardware"]["product"] = "Model{align:center}";
        s["hardware"]["cpu"]["model"] = "{/color}Cpu{";
        s["systemInfo"]["keyboard"]["layout"] = "{ip}";
    });
    root.writeFile("/etc/brelt/support", "{color:red}Support{align:right}\n");

    ConsoleSession console(root, LocalConsole(kCols, kRows));
    ASSERT_TRUE(console.waitForText("https://{color:red}x{align:right}/"));
    EXPECT_TRUE(console.waitForText("{color:red}Vendor Model{align:center}"));
    EXPECT_TRUE(console.waitForText("2 x {/color}Cpu{"));
    // Not red: the host name is drawn like the rest of its line.
    auto name = console.find("https://{color:red}x");
    ASSERT_TRUE(name);
    EXPECT_EQ(console.cell(name->col + 19, name->row).fg, console.cell(name->col, name->row).fg);

    ASSERT_TRUE(WaitWelcome(console));
    ASSERT_TRUE(KeyThen(console, FKey(2), "Login Name:"));
    EXPECT_TRUE(console.find("{color:red}x{align:right}.{bgcolor:white}d.")) << console.text();
    EXPECT_TRUE(console.find("Configured Keyboard ({ip})")) << console.text();
    EnterCredentials(console, "root", kPassword);
    ASSERT_TRUE(console.waitForText("System Customization"));
    ASSERT_TRUE(WaitSettled(console, "<Esc> Log Out"));

    ASSERT_TRUE(GoToEntry(console, "Configure Management Network")) << console.text();
    EXPECT_TRUE(console.find("{color:red}x{align:right}")) << console.text();
    ASSERT_TRUE(GoToEntry(console, "View Support Information")) << console.text();
    EXPECT_TRUE(console.find("{color:red}Support{align:right}")) << console.text();
}

}  // namespace
