// The management network window on simulated hosts: what the panes show,
// when leaving asks to apply, and what each answer does (a host with more
// adapters and addresses: adapters_window_test.cpp).
#include "tests/network/window_support.h"

using namespace NetworkTest;
namespace Key = TeskTest::Key;

namespace {

constexpr char kQuestion[] = "Configure Management Network: Confirm";

bool Contains(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

// One walk on the default host: the DNS pane, dialogs confirmed unchanged ask
// nothing, the 4095 warning, then the apply question's three answers and
// a management interface gone on the way in.
TEST(NetworkWindow, CancelKeepsTheChangeNoWritesNothingYesApplies) {
    SimRoot root("default");
    ConsoleSession console(root, Console());
    ASSERT_TRUE(OpenWindow(console));
    // The DNS pane shows one server per family: an IPv4 one, then an IPv6 one.
    ASSERT_TRUE(GoToEntry(console, "DNS Configuration"));
    EXPECT_TRUE(Contains(Pane(console), "IPv6 DNS Server:"));
    EXPECT_FALSE(Contains(Pane(console), "192.168.10.3")) << Pane(console);

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

    ASSERT_TRUE(KeyThen(console, Key::Enter, "<Esc> Exit"));
    ASSERT_TRUE(OpenSelected(console, "VLAN (optional)", "VLAN ID (1-4094"));
    console.type("4095");
    console.key(Key::Enter);
    constexpr char kWarning[] = "You entered a VLAN ID of 4095";
    ASSERT_TRUE(WaitSettled(console, kWarning));
    // Esc is no key of the warning; an Enter typed right after it (while
    // curses still waits to see whether the Esc starts a sequence) closes it
    // without another key.
    console.key(Key::Esc);
    console.key(Key::Enter);
    ASSERT_TRUE(console.waitForTextGone(kWarning, TeskTest::Scaled(std::chrono::seconds(5))));
    ASSERT_TRUE(WaitSettled(console, "<Esc> Exit"));
    EXPECT_TRUE(Contains(Pane(console), "4095\n")) << Pane(console);
    // Manual is fixed on a static host: the cursor starts on the primary
    // server; the host name is two rows down.
    ASSERT_TRUE(OpenSelected(console, "DNS Configuration", "Use the following DNS"));
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
    ASSERT_TRUE(KeyThen(console, Key::Enter, "<Esc> Exit"));
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

    // An interface gone after the menu opened keeps the menu, with an error.
    root.setFault("network.updateManagementInterface", {{"exception", "no such interface"}});
    console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(console, "Management network interface cannot be found."));
    EXPECT_TRUE(root.hasLogLine("Could not get a suitable management interface"));
    ASSERT_TRUE(Dismiss(console, "Management network interface cannot be found."));
    EXPECT_TRUE(WaitSettled(console, "<Esc> Log Out"));
}

}  // namespace
