// Two consoles on one host, both in "Configure Management Network": each
// writes only what it changed, and the second is told, before anything is
// written, when the first changed the same setting.
#include <gtest/gtest.h>

#include "tests/network/window_support.h"

namespace {

using namespace NetworkTest;

// Appends text to the suffixes in the open window.
bool AddSuffix(ConsoleSession& console, std::string_view text) {
    if (!OpenSelected(console, "Custom DNS Suffixes", "Suffixes:")) return false;
    console.keys({Key::End});
    console.type(text);
    return Close(console, Key::Enter, "Suffixes:");
}

// Leaves the window and answers Yes to the apply question.
void LeaveAndApply(ConsoleSession& console) {
    console.key(Key::Esc);
    ASSERT_TRUE(WaitSettled(console, "Apply changes and restart management network?"));
    console.key("y");
}

// Applies and keeps the change: once the host is on a VLAN that no network
// outside carries, the gateway check fails after every apply.
void ApplyAndKeep(ConsoleSession& console) {
    LeaveAndApply(console);
    ASSERT_TRUE(WaitSettled(console, "<K> Keep"));
    console.key("k");
    ASSERT_TRUE(WaitSettled(console, "<Esc> Log Out"));
}

TEST(TwoConsoles, EachWritesOnlyWhatItChangedAndIsWarnedOfTheSameSetting) {
    SimRoot root("default");
    ConsoleSession first(root, Console());
    ConsoleSession second(root, Console());
    ASSERT_TRUE(OpenWindow(first));
    ASSERT_TRUE(OpenWindow(second));

    // Different settings: the first changes the VLAN, the second the suffixes.
    ASSERT_TRUE(OpenSelected(first, "VLAN (optional)", "VLAN ID (1-4094"));
    first.type("42");
    ASSERT_TRUE(Close(first, Key::Enter, "VLAN ID (1-4094"));
    ApplyAndKeep(first);
    ASSERT_TRUE(AddSuffix(second, " corp.example"));
    ApplyAndKeep(second);
    EXPECT_FALSE(second.find("Changed on the Host"));
    EXPECT_EQ(root.stateValue("/network/dns/searchDomains"), Json({"lab.example", "corp.example"}));
    // The "Management Network" port group's VLAN.
    EXPECT_EQ(root.stateValue("/network/standardSwitches/0/portGroups/0/vlanId"), Json(42));
    EXPECT_EQ(root.logLinesWith("Changed vlan, restarting management interface").size(), 1u);

    // The same setting: the second is shown the host's value and may keep it.
    for (ConsoleSession* console : {&first, &second}) {
        console->key(Key::Enter);
        ASSERT_TRUE(WaitSettled(*console, "<Esc> Exit"));
    }
    ASSERT_TRUE(AddSuffix(first, " first.example"));
    ApplyAndKeep(first);
    ASSERT_TRUE(AddSuffix(second, " second.example"));
    LeaveAndApply(second);
    ASSERT_TRUE(WaitSettled(second, "Management Network Changed on the Host"));
    EXPECT_TRUE(second.find("On the host now:  lab.example, corp.example, first.example"))
        << second.dump();
    EXPECT_TRUE(second.find("In this window:   lab.example, corp.example second.example"));
    second.key("n");
    ASSERT_TRUE(second.waitForTextGone("Changed on the Host"));
    ASSERT_TRUE(WaitSettled(second, "<Esc> Exit"));
    EXPECT_NE(Pane(second).find("first.example"), std::string::npos) << Pane(second);
    EXPECT_EQ(root.stateValue("/network/dns/searchDomains"),
              Json({"lab.example", "corp.example", "first.example"}));
    // Nothing is left to apply.
    second.key(Key::Esc);
    ASSERT_TRUE(WaitSettled(second, "<Esc> Log Out"));
}

}  // namespace
