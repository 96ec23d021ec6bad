// The VLAN dialog: what the field takes, which IDs are refused, warned about
// or taken.
#include <gtest/gtest.h>

#include "network/vlan_dialog.h"
#include "tests/network/window_dialog_keys.h"
#include "ui/keys.h"

namespace {

using namespace Tesk;
using namespace NetworkTest;
using Strings = std::vector<std::string>;

class VlanDialogTest : public TeskTest::ScreenTest {};

TEST_F(VlanDialogTest, RefusesZeroAndFiveDigitIdsUntilCorrected) {
    VlanDialog dialog(nullptr, 0);
    ScriptedKeys keys(Keys({Typed("0"),
                            {KeyEnter, KeyEnter, KEY_BACKSPACE},
                            Typed("99999"),
                            {KeyEnter, KeyEnter},
                            Repeat(KEY_BACKSPACE, 5),
                            Typed("42"),
                            {KeyEnter}}));
    EXPECT_EQ(Tesk::Run(dialog), 1);
    EXPECT_EQ(keys.left(), 0u);
    EXPECT_EQ(keys.messages("VLAN (optional)"), (Strings{"Invalid VLAN ID", "Invalid VLAN ID"}));
    EXPECT_EQ(dialog.value(), 42);
}

TEST_F(VlanDialogTest, TakesAllVlansAfterTheWarning) {
    VlanDialog dialog(nullptr, 20);
    ScriptedKeys keys(Keys({Typed("4095"), {KeyEnter, KeyEnter}}));
    EXPECT_EQ(Tesk::Run(dialog), 1);
    EXPECT_EQ(keys.messages("VLAN (optional)"), Strings{"Warning"});
    EXPECT_EQ(dialog.value(), 4095);
}

TEST_F(VlanDialogTest, AnEmptyFieldUnsetsTheVlan) {
    VlanDialog dialog(nullptr, 20);
    ScriptedKeys keys({KEY_BACKSPACE, KeyEnter});
    EXPECT_EQ(Tesk::Run(dialog), 1);
    EXPECT_TRUE(keys.messages("VLAN (optional)").empty());
    EXPECT_EQ(dialog.value(), 0);
}

TEST_F(VlanDialogTest, OnlyDigitsReachTheFieldAndAHeldKeyStopsAtFive) {
    VlanDialog dialog(nullptr, 0);
    ScriptedKeys keys(Keys(
        {Typed("1a -.x2"), Repeat('7', 40), {KEY_UP, KEY_F(5), KeyEnter, KeyEnter, KeyEscape}}));
    EXPECT_EQ(Tesk::Run(dialog), 0);
    EXPECT_EQ(dialog.value(), 12777);
    EXPECT_EQ(keys.messages("VLAN (optional)"), Strings{"Invalid VLAN ID"});
}

}  // namespace
