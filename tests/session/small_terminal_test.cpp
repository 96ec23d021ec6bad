// Small terminals: everything the screens say is readable on a standard 80x25
// console, and a dialog larger than the terminal is replaced by a note
// instead of taking keys unseen.
#include <string>

#include "tests/session/session_support.h"

using namespace SessionTest;
using TeskTest::Position;

namespace {

// The text of a row between the screen's side borders, trimmed.
std::string Inside(ConsoleSession& console, int row) {
    std::string text = console.row(row);
    const std::string border = "\u2502";
    if (text.starts_with(border)) text.erase(0, border.size());
    if (text.ends_with(border)) text.resize(text.size() - border.size());
    const auto first = text.find_first_not_of(' ');
    const auto last = text.find_last_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

// n cells of a row from a column, as text.
std::string Cells(ConsoleSession& console, int col, int row, int n) {
    std::string text;
    for (int i = 0; i < n; ++i) text += console.cell(col + i, row).text;
    return text;
}

// The rows from..to joined with single spaces: a text wrapped over them.
std::string Joined(ConsoleSession& console, int from, int to) {
    std::string all;
    for (int row = from; row <= to; ++row) {
        const std::string line = Inside(console, row);
        if (line.empty()) continue;
        all += (all.empty() ? "" : " ") + line;
    }
    return all;
}

TEST(SmallTerminal, ADialogLargerThanTheTerminalTakesNoKeys) {
    SimRoot root;
    ConsoleSession console(root, LocalConsole(50, 12));
    ASSERT_TRUE(WaitSettled(console, "<F2>"));
    ASSERT_TRUE(KeyThen(console, FKey(2), "Terminal too small: 60x13 needed."));
    EXPECT_FALSE(console.find("Login Name:"));
    // Typing a login blind does nothing.
    EnterCredentials(console, "root", kPassword);
    console.key(FKey(2));
    // The note may have been closed by an <Enter> and opened again by <F2>.
    EXPECT_TRUE(console.waitForText("Terminal too small"));
    ASSERT_TRUE(console.waitForQuiet());
    EXPECT_TRUE(console.find("Terminal too small"));
    EXPECT_FALSE(root.hasLogLine("Authentication of user"));
    EXPECT_FALSE(console.find("System Customization"));
    // <Esc> leaves the note: the welcome screen, and no login attempt.
    ASSERT_TRUE(Dismiss(console, "Terminal too small", Key::Esc));
    ASSERT_TRUE(WaitSettled(console, "<F2>"));
    EXPECT_TRUE(root.logLinesWith("Authentication of user").empty());
    EXPECT_TRUE(AuditRecords(root, "tesk.login").empty());
}

TEST(Screens80x25, WelcomeWarningsShowWholeBelowTheAddresses) {
    SimRoot root("dhcp");
    ConsoleSession console(root, LocalConsole(80, 25));
    ASSERT_TRUE(WaitWelcome(console));
    ASSERT_TRUE(console.waitForText("Warning: DHCP lookup failed."));
    auto warning = console.find("Warning: DHCP lookup failed.");
    ASSERT_TRUE(warning);
    // Inside the lower panel, above its footer line, every word readable.
    EXPECT_GT(warning->row, 12);
    EXPECT_LT(warning->row, 23);
    EXPECT_EQ(Joined(console, warning->row, 22),
              "Warning: DHCP lookup failed. You may be unable to access this system until you "
              "customize its network configuration.");
    EXPECT_TRUE(console.find("<F2> Customize System/View Logs"));
}

TEST(Screens80x25, EllipsisAndWarningBothFitBesideAHostNameAndFiveIpv6Addresses) {
    SimRoot root("audit");
    root.editState([](Json& s) {
        Json& addresses = s["network"]["zrkNics"][0]["config"]["ipv6Addresses"];
        for (const char* a : {"2001:db8::c", "2001:db8::a", "2001:db8::b", "2001:db8::9"})
            addresses.push_back(
                {{"address", a}, {"prefixLength", 64}, {"type", "static"}, {"scope", "global"}});
    });
    ConsoleSession console(root, LocalConsole(80, 25));
    ASSERT_TRUE(WaitWelcome(console));
    ASSERT_TRUE(console.waitForText("https://tesk-host01/"));
    auto heading = console.find("To manage this host, go to:");
    ASSERT_TRUE(heading);
    EXPECT_EQ(Inside(console, heading->row + 7), "...");
    auto warning = console.find("Warning: Host is running in audit mode.");
    ASSERT_TRUE(warning);
    EXPECT_GT(warning->row, heading->row + 7);
    EXPECT_EQ(Joined(console, warning->row, 22),
              "Warning: Host is running in audit mode. Your configuration will not be persistent "
              "across reboots. Please contact support.");
}

TEST(Screens80x25, MenuTextsAreWhole) {
    SimRoot root("dhcp");
    root.editState([](Json& s) {
        // A lease: the pane says where the address came from.
        Json& nic = s["network"]["zrkNics"][0];
        nic["current"] = nic["config"];
        nic["current"]["ipv4Address"] = "10.20.30.40";
    });
    root.writeFile("/etc/simhost/users", "root::success\n");
    ConsoleSession console(root, LocalConsole(80, 25));
    ASSERT_TRUE(LogIn(console, "root", ""));
    // The empty-password warning, both of its lines, above the footer.
    auto status = console.find("Change default password to prevent");
    ASSERT_TRUE(status);
    EXPECT_LT(status->row, 23);
    EXPECT_EQ(Cells(console, status->col, status->row + 1, 19), "unauthorized access");

    // The DHCP note of the network pane keeps its indent when it wraps.
    for (int i = 0; i < 4 && !console.find("IPv4 Address:"); ++i) {
        const std::string heading = console.row(1);
        console.key(Key::Down);
        ASSERT_TRUE(console.waitFor([&] { return console.row(1) != heading; }, "next entry"));
        ASSERT_TRUE(console.waitForQuiet());
    }
    auto note = console.find("Network identity acquired from");
    ASSERT_TRUE(note) << console.text();
    auto address = console.find("10.20.30.40");
    ASSERT_TRUE(address);
    EXPECT_EQ(note->col, address->col);
    EXPECT_EQ(Cells(console, note->col, note->row + 1, 11), "DHCP server");
}

}  // namespace
