// The management network window on simulated hosts: what the panes show,
// which entries a distributed switch locks, when leaving asks to apply, and
// what each answer does.
#include "tests/network/window_support.h"

using namespace NetworkTest;
namespace Key = TeskTest::Key;

namespace {

constexpr char kQuestion[] = "Configure Management Network: Confirm";

bool Contains(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

TEST(NetworkWindow, ADistributedSwitchLocksAdaptersAndVlan) {
    SimRoot root("qds");
    ConsoleSession console(root, Console());
    ASSERT_TRUE(OpenWindow(console));
    // The selection starts on the first entry that can be chosen and cannot
    // go up to the two locked ones.
    EXPECT_EQ(PaneHeading(console), "IPv4 Configuration");
    console.key(Key::Up);
    console.waitForQuiet();
    EXPECT_EQ(PaneHeading(console), "IPv4 Configuration");
    auto locked = console.find("Network Adapters");
    auto open = console.find("DNS Configuration");
    ASSERT_TRUE(locked && open);
    EXPECT_FALSE(console.cell(locked->col, locked->row).fg ==
                 console.cell(open->col, open->row).fg);
}

TEST(NetworkWindow, PanesFollowTheVlanAndNameServerRules) {
    SimRoot root("default");
    ConsoleSession console(root, Console());
    ASSERT_TRUE(OpenWindow(console));
    ASSERT_TRUE(GoToEntry(console, "DNS Configuration"));
    // An IPv4 server first and an IPv6 one second.
    std::string pane = Pane(console);
    EXPECT_TRUE(Contains(pane, "Primary DNS Server:")) << pane;
    EXPECT_TRUE(Contains(pane, "192.168.10.2")) << pane;
    EXPECT_TRUE(Contains(pane, "IPv6 DNS Server:")) << pane;
    EXPECT_TRUE(Contains(pane, "2001:db8:10::53")) << pane;
    EXPECT_FALSE(Contains(pane, "192.168.10.3")) << pane;
    EXPECT_TRUE(Contains(pane, "Hostname\n")) << pane;

    ASSERT_TRUE(GoToEntry(console, "VLAN (optional)"));
    EXPECT_TRUE(Contains(Pane(console), "Not set"));
    console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(console, "VLAN ID (1-4094"));
    // The field is as wide as the five digits it takes: "[ " 5 cells " ]".
    const std::string field = console.row(RowOf(console, "VLAN ID (1-4094"));
    EXPECT_EQ(field.find(']') - field.find('['), 8u) << field;
    console.type("4095");
    console.key(Key::Enter);
    constexpr char kWarning[] = "You entered a VLAN ID of 4095";
    ASSERT_TRUE(WaitSettled(console, kWarning));
    // The warning's five rows of text need a band two rows higher than a
    // message's: 70 x 12 with a band of 9, centred.
    auto title = console.find("Warning");
    ASSERT_TRUE(title);
    EXPECT_EQ(title->col, (kCols - 70) / 2 + 3);
    EXPECT_EQ(title->row, (kRows - 12) / 2 + 1);
    EXPECT_EQ(RowOf(console, "configure a VLAN ID of 4095."), title->row + 6);
    const auto band = [&](int row) { return console.cell(title->col, row).bg; };
    EXPECT_TRUE(band(title->row + 7) == band(title->row));
    EXPECT_FALSE(band(title->row + 8) == band(title->row));
    EXPECT_EQ(RowOf(console, "<Enter> OK"), title->row + 9);
    // Esc is no key of the warning; an Enter typed right after it (while
    // curses still waits to see whether the Esc starts a sequence) closes it
    // without another key.
    console.key(Key::Esc);
    console.key(Key::Enter);
    ASSERT_TRUE(console.waitForTextGone(kWarning, TeskTest::Scaled(std::chrono::seconds(5))));
    ASSERT_TRUE(WaitSettled(console, "<Esc> Exit"));
    EXPECT_TRUE(Contains(Pane(console), "4095\n")) << Pane(console);
}

TEST(NetworkWindow, OnlyIpv6ServersAndFiveAddresses) {
    SimRoot root("nics");
    ConsoleSession console(root, Console());
    ASSERT_TRUE(OpenWindow(console));
    ASSERT_TRUE(GoToEntry(console, "IPv6 Configuration"));
    std::string pane = Pane(console);
    EXPECT_TRUE(Contains(pane, "IPv6 is enabled.")) << pane;
    EXPECT_TRUE(Contains(pane, "2001:db8:10::22/64")) << pane;
    EXPECT_FALSE(Contains(pane, "2001:db8:10::23/64")) << pane;
    EXPECT_TRUE(Contains(pane, "...\n")) << pane;
    EXPECT_EQ(RowOf(console, "..."), RowOf(console, "2001:db8:10::22/64") + 1);

    ASSERT_TRUE(GoToEntry(console, "DNS Configuration"));
    pane = Pane(console);
    EXPECT_TRUE(Contains(pane, "Alternate DNS Server:")) << pane;
    EXPECT_EQ(RowOf(console, "2001:db8:10::53"), RowOf(console, "Primary DNS Server:") + 1);
    EXPECT_EQ(RowOf(console, "2001:db8:10::54"), RowOf(console, "Alternate DNS Server:") + 1);
}

TEST(NetworkWindow, Ipv6PaneTellsWhatARestartWouldChange) {
    SimRoot root("ipv6off");
    ConsoleSession console(root, Console());
    ASSERT_TRUE(OpenWindow(console));
    ASSERT_TRUE(GoToEntry(console, "IPv6 Configuration"));
    std::string pane = Pane(console);
    EXPECT_TRUE(Contains(pane, "IPv6 is disabled.")) << pane;
    EXPECT_TRUE(Contains(pane, "This host can be configured to")) << pane;
    EXPECT_FALSE(Contains(pane, "IPv6 Addresses")) << pane;

    ASSERT_TRUE(OpenSelected(console, "IPv6 Configuration", "Disable IPv6 (restart required)"));
    console.key(Key::Down);
    console.waitForQuiet();
    console.key(Key::Space);
    console.waitForQuiet();
    ASSERT_TRUE(Close(console, Key::Enter, "Disable IPv6 (restart required)"));
    pane = Pane(console);
    EXPECT_TRUE(Contains(pane, "IPv6 is enabled.")) << pane;
    EXPECT_TRUE(Contains(pane, "IPv6 will be enabled")) << pane;
}

TEST(NetworkWindow, ConfirmingTheSameValuesAsksNothing) {
    SimRoot root("default");
    ConsoleSession console(root, Console());
    ASSERT_TRUE(OpenWindow(console));
    for (const auto& [topic, text] : {std::pair{"Network Adapters", "Hardware Label (MAC Address)"},
                                      {"VLAN (optional)", "VLAN ID (1-4094"},
                                      {"IPv4 Configuration", "Set static IPv4"},
                                      {"IPv6 Configuration", "Set static IPv6"},
                                      {"DNS Configuration", "Use the following DNS"},
                                      {"Custom DNS Suffixes", "Suffixes:"}}) {
        ASSERT_TRUE(OpenSelected(console, topic, text));
        ASSERT_TRUE(Close(console, Key::Enter, text));
    }
    console.key(Key::Esc);
    ASSERT_TRUE(WaitSettled(console, "<Esc> Log Out"));
    EXPECT_FALSE(Contains(console.text(), kQuestion));
}

TEST(NetworkWindow, Ipv6SwitchedOffAndOnAgainAsksNothing) {
    SimRoot root("default");
    ConsoleSession console(root, Console());
    ASSERT_TRUE(OpenWindow(console));
    // Off: the question names the restart, and Cancel stays.
    ASSERT_TRUE(OpenSelected(console, "IPv6 Configuration", "Disable IPv6 (restart required)"));
    console.key(Key::Space);
    console.waitForQuiet();
    ASSERT_TRUE(Close(console, Key::Enter, "Disable IPv6 (restart required)"));
    EXPECT_TRUE(Contains(Pane(console), "IPv6 is disabled."));
    console.key(Key::Esc);
    ASSERT_TRUE(WaitSettled(console, "Apply changes and reboot host?"));
    ASSERT_TRUE(Close(console, Key::Esc, "Apply changes and reboot host?"));
    // On again in static mode (the DHCPv6 box is skipped while off).
    ASSERT_TRUE(OpenSelected(console, "IPv6 Configuration", "Disable IPv6 (restart required)"));
    console.keys({Key::Down, Key::Down});
    console.waitForQuiet();
    console.key(Key::Space);
    console.waitForQuiet();
    ASSERT_TRUE(Close(console, Key::Enter, "Disable IPv6 (restart required)"));
    EXPECT_TRUE(Contains(Pane(console), "IPv6 is enabled.")) << Pane(console);
    console.key(Key::Esc);
    ASSERT_TRUE(WaitSettled(console, "<Esc> Log Out"));
    EXPECT_FALSE(Contains(console.text(), kQuestion));
}

TEST(NetworkWindow, CancelKeepsTheChangeNoWritesNothingYesApplies) {
    SimRoot root("default");
    ConsoleSession console(root, Console());
    ASSERT_TRUE(OpenWindow(console));
    ASSERT_TRUE(OpenSelected(console, "DNS Configuration", "Use the following DNS"));
    // Manual is fixed on a static host: the cursor starts on the primary
    // server; the host name is two rows down.
    console.keys({Key::Down, Key::Down});
    console.waitForQuiet();
    console.type("newhost");
    ASSERT_TRUE(Close(console, Key::Enter, "Use the following DNS"));
    EXPECT_TRUE(Contains(Pane(console), "newhost"));

    console.key(Key::Esc);
    ASSERT_TRUE(WaitSettled(console, "Apply changes and restart management network?"));
    ASSERT_TRUE(Close(console, Key::Esc, "Apply changes and restart"));
    EXPECT_TRUE(Contains(Pane(console), "newhost"));

    console.key(Key::Esc);
    ASSERT_TRUE(WaitSettled(console, "Apply changes and restart management network?"));
    console.key("n");
    ASSERT_TRUE(WaitSettled(console, "<Esc> Log Out"));
    EXPECT_EQ(root.stateValue("/network/dns/hostname"), Json("tesk-host01"));
    EXPECT_FALSE(root.hasLogLine("Network settings changed."));

    // The window reads the host afresh; this time the change is applied.
    console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(console, "<Esc> Exit"));
    ASSERT_TRUE(OpenSelected(console, "Custom DNS Suffixes", "Suffixes:"));
    console.keys({Key::End});
    console.type(" corp.example");
    ASSERT_TRUE(Close(console, Key::Enter, "Suffixes:"));
    EXPECT_TRUE(Contains(Pane(console), "lab.example corp.example"));
    console.key(Key::Esc);
    ASSERT_TRUE(WaitSettled(console, "Apply changes and restart management network?"));
    console.key("y");
    ASSERT_TRUE(WaitSettled(console, "<Esc> Log Out"));
    EXPECT_TRUE(root.waitForLogLine("Network settings changed."));
}

TEST(NetworkWindow, AFailingSwitchQueryKeepsTheMenu) {
    SimRoot root("default");
    root.setFault("portGroup.getVlanId", {{"exception", "VLAN table unreadable"}});
    ConsoleSession console(root, Console());
    ASSERT_TRUE(LogIn(console));
    ASSERT_TRUE(GoToEntry(console, "Configure Management Network"));
    console.key(Key::Enter);
    EXPECT_TRUE(root.waitForLogLine("Getting VlanID failed: VLAN table unreadable"));
    console.waitForQuiet();
    EXPECT_TRUE(Contains(console.text(), "<Esc> Log Out"));
    EXPECT_FALSE(Contains(console.text(), "<Esc> Exit"));

    // The interface gone after the menu opened: an error, and the menu again.
    root.setFault("portGroup.getVlanId", nullptr);
    root.setFault("network.updateManagementInterface", {{"exception", "no such interface"}});
    console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(console, "Management network interface cannot be found."));
    EXPECT_TRUE(Contains(console.text(), "Enable Management Network: Error"));
    EXPECT_TRUE(root.hasLogLine("Could not get a suitable management interface"));
    ASSERT_TRUE(Dismiss(console, "Management network interface cannot be found."));
    EXPECT_TRUE(WaitSettled(console, "<Esc> Log Out"));
}

}  // namespace
