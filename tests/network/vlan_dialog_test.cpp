// The VLAN dialog: what the field takes, which IDs are refused, warned about
// or taken, and that an empty field unsets the VLAN.
#include <gtest/gtest.h>

#include "network/vlan_dialog.h"
#include "tests/network/window_dialog_keys.h"
#include "ui/keys.h"

namespace {

using namespace Tesk;
using namespace NetworkTest;
using Strings = std::vector<std::string>;

class VlanDialogTest : public TeskTest::ScreenTest {};

TEST_F(VlanDialogTest, RefusesZeroAndFiveDigitIdsWarnsOf4095AndTakesTheRest) {
    struct Case {
        int start;
        std::deque<int> keys;
        int result, value;
        Strings messages;
    };
    const Case cases[] = {
        {0,
         Keys({Typed("0"),
               {KeyEnter, KeyEnter, KEY_BACKSPACE},
               Typed("99999"),
               {KeyEnter, KeyEnter},
               Repeat(KEY_BACKSPACE, 5),
               Typed("42"),
               {KeyEnter}}),
         1,
         42,
         {"Invalid VLAN ID", "Invalid VLAN ID"}},
        {20, Keys({Typed("4095"), {KeyEnter, KeyEnter}}), 1, 4095, {"Warning"}},
        {20, {KEY_BACKSPACE, KeyEnter}, 1, 0, {}},
        // Only digits reach the field, and a held key stops at five.
        {0,
         Keys({Typed("1a -.x2"),
               Repeat('7', 40),
               {KEY_UP, KEY_F(5), KeyEnter, KeyEnter, KeyEscape}}),
         0,
         12777,
         {"Invalid VLAN ID"}},
    };
    for (const Case& c : cases) {
        VlanDialog dialog(nullptr, c.start);
        ScriptedKeys keys(c.keys);
        EXPECT_EQ(Tesk::Run(dialog), c.result) << c.value;
        EXPECT_EQ(keys.left(), 0u) << c.value;
        EXPECT_EQ(keys.messages("VLAN (optional)"), c.messages) << c.value;
        EXPECT_EQ(dialog.value(), c.value);
    }
}

}  // namespace
