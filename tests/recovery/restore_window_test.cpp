// The network restore window: which rows the host allows, and the pane that
// follows the selection.
#include "tests/recovery/recovery_support.h"

using namespace RecoveryTest;

namespace {

TeskTest::Colour RowColour(ConsoleSession& console, std::string_view row) {
    auto at = console.find(row);
    EXPECT_TRUE(at) << row;
    return at ? console.cell(at->col, at->row).fg : TeskTest::Colour{};
}

}  // namespace

TEST(RestoreWindow, StandardSwitchHostWithoutAgentGreysTheirRows) {
    SimRoot root("default");
    ConsoleSession console(root, RemoteShell(kCols, kRows));
    ASSERT_TRUE(OpenRestoreWindow(console));

    const auto enabled = RowColour(console, "Create Port Group");
    EXPECT_EQ(RowColour(console, "Restore Network Settings"), enabled);
    for (const char* grey :
         {"Migrate Zerkel NIC to Standard Switch", "Restore Standard Switch", "Restore qDS"})
        EXPECT_NE(RowColour(console, grey), enabled) << grey;

    // The window's own footer until the selection moves, then the row's.
    EXPECT_NE(PaneFooter(console).find("<Enter> Change"), std::string::npos);
    EXPECT_NE(Pane(console).find("Create a new standard virtual switch"), std::string::npos);
    Down(console);
    EXPECT_NE(Pane(console).find("Create a new port group by name"), std::string::npos);
    EXPECT_NE(PaneFooter(console).find("<Enter> Create"), std::string::npos);

    // The greyed migration row is skipped: the factory restore's footer says
    // "Restart".
    Down(console);
    EXPECT_NE(Pane(console).find("will revert all network configuration"), std::string::npos);
    EXPECT_NE(PaneFooter(console).find("<Enter> Restart"), std::string::npos);
}

TEST(RestoreWindow, DistributedSwitchHostWithAgentOffersEveryRow) {
    SimRoot root("qds");
    ConsoleSession console(root, RemoteShell(kCols, kRows));
    ASSERT_TRUE(OpenRestoreWindow(console));

    const auto enabled = RowColour(console, "Create Port Group");
    for (const char* row : {"Migrate Zerkel NIC to Standard Switch", "Restore Network Settings",
                            "Restore Standard Switch", "Restore qDS"})
        EXPECT_EQ(RowColour(console, row), enabled) << row;
    Down(console, 2);
    EXPECT_NE(Pane(console).find("Migrate a zrknic"), std::string::npos);
    EXPECT_NE(PaneFooter(console).find("<Enter> Migrate"), std::string::npos);
    Down(console, 3);
    EXPECT_NE(Pane(console).find("This operation is available only for Brelt qDS"),
              std::string::npos);
    EXPECT_NE(PaneFooter(console).find("<Enter> Restore"), std::string::npos);
}

TEST(RestoreWindow, EveryRowIsWholeOnAStandardConsole) {
    SimRoot root("qds");
    ConsoleSession console(root, RemoteShell(80, 25));
    ASSERT_TRUE(OpenEntry(console, "Network Restore Options", "Create Standard Switch"));
    // The longest row pushes the pane aside rather than losing its last word;
    // the pane still shows its text and footer whole.
    const auto row = console.find("Migrate Zerkel NIC to Standard Switch");
    ASSERT_TRUE(row) << console.text();
    const auto pane = console.find("Create a new standard");
    ASSERT_TRUE(pane) << console.text();
    EXPECT_GT(pane->col, row->col + 37);
    EXPECT_NE(console.row(23).find("<Esc> Exit"), std::string::npos) << console.row(23);
}
