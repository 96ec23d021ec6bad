// The customization menu: its entries and their enable rules, and the right
// pane and footer of each entry.
#include <string>

#include "tests/session/session_support.h"

using namespace SessionTest;

namespace {

constexpr int kCols = 100, kRows = 30;
constexpr int kPaneColumn = kCols / 2;

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
    std::vector<std::string> pane;  // fragments of the pane text
    const char* footerLeft;         // null: no <Enter> action
    bool logOut = true;
};

// The host does not offer one entry's feature: greyed with the host's reason
// in its pane, and <Enter> opens nothing.
constexpr char kNotOfferedReason[] = "This host keeps no extensions of its own.";

TEST(Menu, EveryEntryDescribesItselfWithItsFooter) {
    SimRoot root;
    root.editState(
        [](Json& state) { state["notOffered"]["customExtensions"] = kNotOfferedReason; });
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

    // The panes' host facts and each footer's <Enter> action.
    const PaneCase cases[] = {
        {"Configure Password", {"Set"}, "<Enter> Change"},
        {"Configure Lockdown Mode", {"Disabled"}, "<Enter> Change"},
        {"Configure Management Network",
         {"Hostname:", "tesk-host01", "IPv4 Address:", "192.168.10.21",
          "IPv6 Addresses:", "2001:db8:10::21/64"},
         "<Enter> More"},
        {"Restart Management Network", {}, "<Enter> Restart"},
        {"Test Management Network", {}, "<Enter> Run Test"},
        {"Network Restore Options", {}, "<Enter> Restart"},
        {"Configure Keyboard", {}, "<Enter> More"},
        {"Troubleshooting Options", {}, "<Enter> More"},
        {"View System Logs",
         {"<1> Syslog", "<2> Zerkel", "<3> Config", "<7> Brelt Kovix Observation log (noxd)"},
         nullptr},
        {"View Support Information",
         {"Serial Number: SIM-0001-DEMO", "This host is simulated."},
         nullptr,
         false},
        {"Reset System Configuration", {"Warning!"}, "<Enter> Reset"},
        {"Remove Custom Extensions", {kNotOfferedReason}, nullptr},
    };
    for (const PaneCase& c : cases) {
        SCOPED_TRACE(c.entry);
        ASSERT_TRUE(GoToEntry(console, c.entry));
        const std::string pane = PaneWithoutBlanks(console);
        for (std::string fragment : c.pane) {
            std::erase(fragment, ' ');
            EXPECT_NE(pane.find(fragment), std::string::npos) << fragment << " in\n" << pane;
        }
        const std::string footer = Footer(console);
        if (c.footerLeft) {
            EXPECT_TRUE(footer.starts_with(std::string("  ") + c.footerLeft)) << footer;
        } else {
            EXPECT_EQ(footer.find("<Enter>"), std::string::npos) << footer;
        }
        EXPECT_EQ(footer.ends_with("<Esc> Log Out"), c.logOut) << footer;
        // A password was typed: no warning about an empty one.
        EXPECT_EQ(pane.find("Changedefaultpassword"), std::string::npos);
        EXPECT_EQ(pane.find("Notset"), std::string::npos);
    }
    // The last entry stays selected, and the greyed entry opens nothing.
    EXPECT_FALSE(StepSelection(console));
    EXPECT_EQ(PaneHeading(console), "Remove Custom Extensions");
    console.key(Key::Enter);
    console.waitForQuiet();
    EXPECT_EQ(console.text().find("All custom extensions will be removed."), std::string::npos)
        << console.text();
    EXPECT_TRUE(console.find(kNotOfferedReason)) << console.text();
}

}  // namespace
