// The customization menu: its entries and their enable rules, and the right
// pane and footer of each entry.
#include <string>

#include "tests/session/session_support.h"

using namespace SessionTest;

namespace {

constexpr int kCols = 100, kRows = 30;
constexpr int kPaneColumn = kCols / 2;

// The right half of the screen: the selected entry's pane, status and footer.
std::string Pane(ConsoleSession& console) {
    std::string text;
    for (int r = 0; r < kRows; ++r) {
        std::string row = console.row(r);
        if (static_cast<int>(row.size()) > kPaneColumn) text += row.substr(kPaneColumn);
        text += "\n";
    }
    return text;
}

std::string Footer(ConsoleSession& console) {
    std::string row = console.row(kRows - 2);
    return static_cast<int>(row.size()) > kPaneColumn ? row.substr(kPaneColumn) : "";
}

// The menu's entries, top to bottom, as the left half shows them.
std::vector<std::string> Entries(ConsoleSession& console) {
    std::vector<std::string> entries;
    for (int r = 3; r < kRows - 3; ++r) {
        std::string row = console.row(r).substr(0, kPaneColumn);
        auto b = row.find_first_not_of(' ');
        if (b == std::string::npos) continue;
        auto e = row.find_last_not_of(' ');
        entries.push_back(row.substr(b, e - b + 1));
    }
    return entries;
}

struct PaneCase {
    const char* entry;
    std::vector<const char*> pane;  // fragments of the pane text
    const char* footerLeft;         // null: no <Enter> action
    bool logOut = true;
};

TEST(Menu, EveryEntryDescribesItselfWithItsFooter) {
    SimRoot root;
    ConsoleSession console(root, LocalConsole(kCols, kRows));
    ASSERT_TRUE(LogIn(console));
    EXPECT_TRUE(console.find("<Up/Down> Select"));
    EXPECT_EQ(
        Entries(console),
        (std::vector<std::string>{
            "Configure Password", "Configure Lockdown Mode", "Configure Management Network",
            "Restart Management Network", "Test Management Network", "Network Restore Options",
            "Configure Keyboard", "Troubleshooting Options", "View System Logs",
            "View Support Information", "Reset System Configuration", "Remove Custom Extensions"}));

    const PaneCase cases[] = {
        {"Configure Password", {"Set", "To prevent unauthorized access to"}, "<Enter> Change"},
        {"Configure Lockdown Mode",
         {"Disabled", "When enabled, lockdown mode prevents"},
         "<Enter> Change"},
        {"Configure Management Network",
         {"Hostname:", "tesk-host01", "IPv4 Address:", "192.168.10.21",
          "IPv6 Addresses:", "2001:db8:10::21/64", "To view or modify this host's"},
         "<Enter> More"},
        {"Restart Management Network", {"Restarting the management network"}, "<Enter> Restart"},
        {"Test Management Network", {"To perform a brief network test, press"}, "<Enter> Run Test"},
        {"Network Restore Options", {"To view various network restore options"}, "<Enter> Restart"},
        {"Configure Keyboard", {"To select the layout type for the"}, "<Enter> More"},
        {"Troubleshooting Options", {"To view various troubleshooting mode"}, "<Enter> More"},
        {"View System Logs",
         {"<1> Syslog", "<2> Zerkel", "<3> Config", "<7> Brelt Kovix Observation log (noxd)",
          "Press the corresponding key to view a log.", "Press <Q> to return to this screen."},
         nullptr},
        {"View Support Information",
         {"Serial Number: SIM-0001-DEMO", "This host is simulated."},
         nullptr,
         false},
        {"Reset System Configuration",
         {"Warning!", "All system parameters will be reverted"},
         "<Enter> Reset"},
        {"Remove Custom Extensions",
         {"Warning!", "All custom extensions will be removed."},
         "<Enter> Reset"},
    };
    for (const PaneCase& c : cases) {
        SCOPED_TRACE(c.entry);
        ASSERT_TRUE(GoToEntry(console, c.entry));
        const std::string pane = Pane(console);
        for (const char* fragment : c.pane)
            EXPECT_NE(pane.find(fragment), std::string::npos) << fragment << " in\n" << pane;
        const std::string footer = Footer(console);
        if (c.footerLeft) {
            EXPECT_TRUE(footer.starts_with(std::string("  ") + c.footerLeft)) << footer;
        } else {
            EXPECT_EQ(footer.find("<Enter>"), std::string::npos) << footer;
        }
        EXPECT_EQ(footer.ends_with("<Esc> Log Out"), c.logOut) << footer;
        // A password was typed: no warning about an empty one.
        EXPECT_EQ(pane.find("Change default password"), std::string::npos);
        EXPECT_EQ(pane.find("Not set"), std::string::npos);
    }
    // The last entry stays selected.
    EXPECT_FALSE(StepSelection(console));
    EXPECT_EQ(PaneHeading(console), "Remove Custom Extensions");
}

}  // namespace

// A menu entry whose feature the host does not offer: greyed with the host's
// reason in its pane, and <Enter> opens nothing.
constexpr char kNotOfferedReason[] = "This host keeps no extensions of its own.";

TEST(NotOffered, EntryIsGreyedWithTheReasonAndOpensNothing) {
    SimRoot root;
    root.editState(
        [](Json& state) { state["notOffered"]["customExtensions"] = kNotOfferedReason; });
    ConsoleSession console(root, LocalConsole(kCols, kRows));
    ASSERT_TRUE(LogIn(console));
    ASSERT_TRUE(GoToEntry(console, "Remove Custom Extensions")) << console.text();
    ASSERT_TRUE(console.waitForText(kNotOfferedReason));
    EXPECT_EQ(console.text().find("<Enter> Reset"), std::string::npos) << console.text();
    console.key(Key::Enter);
    console.waitForQuiet();
    EXPECT_EQ(console.text().find("All custom extensions will be removed."), std::string::npos)
        << console.text();
    EXPECT_NE(console.text().find(kNotOfferedReason), std::string::npos) << console.text();
}
