// The adapters dialog on a host with long adapter names and labels: how rows
// are cut, when the used-adapter warning comes, and which selections count
// as a change.
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

TEST(AdaptersDialog, RowsCutLongNamesLabelsAndMacAddresses) {
    SimRoot root("nics");
    ConsoleSession console(root, Console());
    ASSERT_TRUE(OpenWindow(console));
    ASSERT_TRUE(OpenSelected(console, "Network Adapters", kDialogText));
    const std::string screen = console.text();
    // Twelve characters and more: eight and "...".
    EXPECT_TRUE(Contains(screen, "pnic-fab...  Acme NetX 1000 (...a1:30:00)")) << screen;
    // A label of fifteen characters: eleven and "..."; the MAC address keeps
    // what fits beside it.
    EXPECT_TRUE(Contains(screen, "pnic-fab...  Acme NetX 1... (...a1:30:01)")) << screen;
    EXPECT_TRUE(Contains(screen, "pnic3        N/A (02:5a:4b:a1:20:01)")) << screen;
    EXPECT_TRUE(Contains(screen, "Connected (...)")) << screen;

    // D shows the adapter under the cursor whole.
    console.key("d");
    ASSERT_TRUE(WaitSettled(console, "Adapter Details"));
    EXPECT_TRUE(Contains(console.text(), "Device Name: pnic-fabric0"));
    EXPECT_TRUE(Contains(console.text(), "Used By: None"));
    ASSERT_TRUE(Dismiss(console, "Adapter Details"));
    ASSERT_TRUE(WaitSettled(console, kDialogText));
    ASSERT_TRUE(Close(console, Key::Esc, kDialogText));

    // Adapters that cannot be listed: no dialog, the window stays.
    root.setFault("vswitchInfo.getQdsSwitches", {{"exception", "qDS service down"}});
    console.key(Key::Enter);
    EXPECT_TRUE(root.waitForLogLine("Scanning qDS switches failed: qDS service down"));
    console.waitForQuiet();
    EXPECT_FALSE(Contains(console.text(), kDialogText));
    EXPECT_TRUE(Contains(console.text(), "<Esc> Exit"));

    // The management interface lost its connection after the window read it:
    // the interface is read again, and the dialog does not open.
    root.setFault("vswitchInfo.getQdsSwitches", nullptr);
    root.editState([](Json& s) { s["network"]["zrkNics"][0]["connection"] = nullptr; });
    console.key(Key::Enter);
    EXPECT_TRUE(root.waitForLogLine("Getting switch name failed: Unsupported connectee type"));
    console.waitForQuiet();
    EXPECT_FALSE(Contains(console.text(), kDialogText));
    EXPECT_TRUE(Contains(console.text(), "<Esc> Exit"));
}

TEST(AdaptersDialog, OnlyAnotherSwitchsAdapterWarnsAndIsTakenAnyway) {
    SimRoot root("nics");
    ConsoleSession console(root, Console());
    ASSERT_TRUE(OpenWindow(console));
    // The management switch's own adapters: no warning, no change.
    ASSERT_TRUE(OpenSelected(console, "Network Adapters", kDialogText));
    ASSERT_TRUE(Close(console, Key::Enter, kDialogText));
    EXPECT_FALSE(Contains(console.text(), kWarning));

    ASSERT_TRUE(OpenSelected(console, "Network Adapters", kDialogText));
    MoveDown(console, 4);
    console.key(Key::Space);
    console.waitForQuiet();
    console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(console, "Remove these adapters from their current connections?"));
    ASSERT_TRUE(Close(console, Key::Esc, "Remove these adapters"));
    EXPECT_LT(RowOf(console, "pnic1 ("), RowOf(console, "pnic2 ("));
    EXPECT_LT(RowOf(console, "pnic0 ("), RowOf(console, "pnic1 ("));
    console.key(Key::Esc);
    EXPECT_TRUE(WaitSettled(console, kQuestion));
}

TEST(AdaptersDialog, ReorderingAndEmptyingAreChanges) {
    SimRoot root("nics");
    ConsoleSession console(root, Console());
    ASSERT_TRUE(OpenWindow(console));
    // pnic0 cleared and checked again goes to the end.
    ASSERT_TRUE(OpenSelected(console, "Network Adapters", kDialogText));
    MoveDown(console, 2);
    console.key(Key::Space);
    console.waitForQuiet();
    console.key(Key::Space);
    console.waitForQuiet();
    ASSERT_TRUE(Close(console, Key::Enter, kDialogText));
    EXPECT_LT(RowOf(console, "pnic1 ("), RowOf(console, "pnic0 ("));
    // A new order alone is a change.
    console.key(Key::Esc);
    ASSERT_TRUE(WaitSettled(console, kQuestion));
    ASSERT_TRUE(Close(console, Key::Esc, kQuestion));

    // Nothing checked is a selection too.
    ASSERT_TRUE(OpenSelected(console, "Network Adapters", kDialogText));
    MoveDown(console, 2);
    console.key(Key::Space);
    console.waitForQuiet();
    console.key(Key::Down);
    console.waitForQuiet();
    console.key(Key::Space);
    console.waitForQuiet();
    ASSERT_TRUE(Close(console, Key::Enter, kDialogText));
    EXPECT_EQ(RowOf(console, "pnic0 ("), -1);
    EXPECT_EQ(RowOf(console, "pnic1 ("), -1);
    console.key(Key::Esc);
    ASSERT_TRUE(WaitSettled(console, kQuestion));
    console.key("n");
    ASSERT_TRUE(WaitSettled(console, "<Esc> Log Out"));
}

}  // namespace
