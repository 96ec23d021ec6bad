// The IPv4 dialog: the checks of a static configuration in their order, the
// field that gets the cursor after a refusal, and the modes that need no
// fields.
#include <gtest/gtest.h>

#include "network/ip_dialog.h"
#include "tests/network/window_dialog_keys.h"
#include "ui/keys.h"

namespace {

using namespace Tesk;
using namespace NetworkTest;
namespace HN = HostCtl::Network;
using Strings = std::vector<std::string>;

constexpr char kTitle[] = "IPv4 Configuration";

HN::IpConfig StaticConfig() {
    HN::IpConfig c;
    c.SetIpv4Address(HN::Ipv4Address("192.168.10.21"));
    c.SetIpv4Netmask(HN::Ipv4Address("255.255.255.0"));
    c.SetIpv4Gateway(HN::Ipv4Address("192.168.10.1"));
    return c;
}

class IpDialogTest : public TeskTest::ScreenTest {};

TEST_F(IpDialogTest, AnEmptyGatewayIsRefusedAndTheCursorStaysOnIt) {
    IPConfigurationDialog dialog(nullptr, false, false, StaticConfig());
    // Down to the gateway (past the blank line), clear it, try; then type
    // into the field the cursor was put back on.
    ScriptedKeys keys(Keys(
        {Repeat(KEY_DOWN, 5), {KEY_BACKSPACE, KeyEnter, KeyEnter}, Typed("10.0.0.1"), {KeyEnter}}));
    EXPECT_EQ(Tesk::Run(dialog), 1);
    EXPECT_EQ(keys.messages(kTitle), Strings{"Invalid gateway address"});
    EXPECT_EQ(dialog.result().GetIpv4Gateway().GetStringAddress(), "10.0.0.1");
    EXPECT_EQ(dialog.result().GetIpv4Address().GetStringAddress(), "192.168.10.21");
}

TEST_F(IpDialogTest, ChecksAddressThenMaskThenGateway) {
    IPConfigurationDialog dialog(nullptr, false, false, StaticConfig());
    ScriptedKeys keys(Keys({Repeat(KEY_DOWN, 3),
                            Typed("10.1.2"),
                            {KEY_DOWN},
                            Typed("255.0.255.0"),
                            {KEY_DOWN, KEY_BACKSPACE},
                            // The address is refused first and gets the cursor.
                            {KeyEnter, KeyEnter},
                            Typed("10.1.2.3"),
                            // Then the mask.
                            {KeyEnter, KeyEnter},
                            Typed("255.255.0.0"),
                            // Then the gateway.
                            {KeyEnter, KeyEnter},
                            Typed("10.1.0.1"),
                            {KeyEnter}}));
    EXPECT_EQ(Tesk::Run(dialog), 1);
    EXPECT_EQ(keys.left(), 0u);
    EXPECT_EQ(keys.messages(kTitle),
              (Strings{"Invalid IP address", "Invalid subnet", "Invalid gateway address"}));
    const HN::IpConfig& r = dialog.result();
    EXPECT_FALSE(dialog.dhcp());
    EXPECT_FALSE(dialog.none());
    EXPECT_EQ(r.GetIpv4Address().GetStringAddress(), "10.1.2.3");
    EXPECT_EQ(r.GetIpv4Netmask().GetStringAddress(), "255.255.0.0");
    EXPECT_EQ(r.GetIpv4Gateway().GetStringAddress(), "10.1.0.1");
}

TEST_F(IpDialogTest, NoneAndDhcpIgnoreTheFields) {
    for (int mode : {0, 1}) {
        IPConfigurationDialog dialog(nullptr, false, false, StaticConfig());
        // Spoil the address, go back up to the mode and choose it.
        ScriptedKeys keys(
            Keys({Repeat(KEY_DOWN, 3), Typed("1.2"), Repeat(KEY_UP, 3 - mode), {' ', KeyEnter}}));
        EXPECT_EQ(Tesk::Run(dialog), 1) << mode;
        EXPECT_TRUE(keys.messages(kTitle).empty()) << mode;
        EXPECT_EQ(dialog.none(), mode == 0);
        EXPECT_EQ(dialog.dhcp(), mode == 1);
        EXPECT_EQ(dialog.result().GetIpv4Gateway().GetAddress(), 0u) << mode;
        EXPECT_EQ(dialog.result().GetIpv4UseNone(), mode == 0);
    }
}

TEST_F(IpDialogTest, FieldsAreClosedOutsideStaticModeAndTakeOnlyDigitsAndDots) {
    IPConfigurationDialog dialog(nullptr, false, true, StaticConfig());
    // In DHCP mode Down stops at the last radio; choosing static opens the
    // fields, where letters and blanks go nowhere.
    ScriptedKeys keys(
        Keys({Repeat(KEY_DOWN, 4), {' ', KEY_DOWN}, Typed("10.x 0.a0.9"), {KeyEnter}}));
    EXPECT_EQ(Tesk::Run(dialog), 1);
    EXPECT_TRUE(keys.messages(kTitle).empty());
    EXPECT_FALSE(dialog.dhcp());
    EXPECT_EQ(dialog.result().GetIpv4Address().GetStringAddress(), "10.0.0.9");
}

TEST_F(IpDialogTest, EachFieldTakesSixteenCharacters) {
    IPConfigurationDialog dialog(nullptr, false, false, StaticConfig());
    const std::string typed = "1234567890.234567";  // 17 characters
    ScriptedKeys keys(Keys({Repeat(KEY_DOWN, 3),
                            Typed(typed),
                            {KEY_DOWN},
                            Typed(typed),
                            {KEY_DOWN},
                            Typed(typed),
                            {KeyEscape}}));
    EXPECT_EQ(Tesk::Run(dialog), 0);
    // Items: three modes, a blank line, the three fields.
    for (std::size_t i = 4; i < 7; ++i) {
        const auto& field = dynamic_cast<const InputItem&>(dialog.items().at(i));
        EXPECT_EQ(field.value(), typed.substr(0, 16)) << i;
        EXPECT_EQ(field.fieldWidth(), 16) << i;
    }
}

}  // namespace
