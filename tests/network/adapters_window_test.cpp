// The adapters dialog on a host with many adapters: when the used-adapter
// warning comes and which selections count as a change.
// (How rows are cut: queries_test.cpp.)
#include "tests/network/window_support.h"

using namespace NetworkTest;
namespace Key = TeskTest::Key;

namespace {

constexpr char kDialogText[] = "Hardware Label (MAC Address)";
constexpr char kWarning[] = "Network Adapters: Warning";
constexpr char kQuestion[] = "Configure Management Network: Confirm";

bool Contains(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

// The adapters open in the dialog, in order: pnic-fabric0, pnic-fabric10,
// pnic0, pnic1, pnic2 (zSwitch1's), pnic3, pnic5. pnic0 and pnic1 carry the
// management network on zSwitch0.
void MoveDown(ConsoleSession& console, int times) {
    for (int i = 0; i < times; ++i) console.key(Key::Down);
    console.waitForQuiet();
}

TEST(AdaptersDialog, WarnsOfAnotherSwitchsAdapterAndOrderAndEmptyingAreChanges) {
    SimRoot root("nics");
    ConsoleSession console(root, Console());
    ASSERT_TRUE(OpenWindow(console));
    ASSERT_TRUE(OpenSelected(console, "Network Adapters", kDialogText));
    // The management switch's own adapters: no warning, no change.
    ASSERT_TRUE(Close(console, Key::Enter, kDialogText));
    EXPECT_FALSE(Contains(console.text(), kWarning));

    // pnic0 cleared and checked again goes to the end.
    ASSERT_TRUE(OpenSelected(console, "Network Adapters", kDialogText));
    MoveDown(console, 2);
    console.key(Key::Space);
    console.waitForQuiet();
    console.key(Key::Space);
    console.waitForQuiet();
    ASSERT_TRUE(Close(console, Key::Enter, kDialogText));
    EXPECT_LT(RowOf(console, "pnic1 ("), RowOf(console, "pnic0 ("));

    // pnic2 is zSwitch1's: the warning, and taken anyway.
    ASSERT_TRUE(OpenSelected(console, "Network Adapters", kDialogText));
    MoveDown(console, 4);
    console.key(Key::Space);
    console.waitForQuiet();
    console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(console, "Remove these adapters from their current connections?"));
    ASSERT_TRUE(Close(console, Key::Esc, "Remove these adapters"));
    EXPECT_LT(RowOf(console, "pnic0 ("), RowOf(console, "pnic2 ("));

    // Nothing checked is a selection too.
    ASSERT_TRUE(OpenSelected(console, "Network Adapters", kDialogText));
    MoveDown(console, 2);
    for (int i = 0; i < 3; ++i) {
        console.key(Key::Space);
        console.waitForQuiet();
        console.key(Key::Down);
        console.waitForQuiet();
    }
    ASSERT_TRUE(Close(console, Key::Enter, kDialogText));
    EXPECT_EQ(RowOf(console, "pnic0 ("), -1);
    EXPECT_EQ(RowOf(console, "pnic2 ("), -1);
    console.key(Key::Esc);
    ASSERT_TRUE(WaitSettled(console, kQuestion));
    console.key("n");
    ASSERT_TRUE(WaitSettled(console, "<Esc> Log Out"));
}

}  // namespace
