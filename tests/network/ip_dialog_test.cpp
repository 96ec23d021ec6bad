// The IPv4 dialog: the checks of a static configuration in their order, the
// field that gets the cursor after a refusal, the modes that need no fields,
// and what the fields take.
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

// Each refusal puts the cursor on its field, where the next text goes.
TEST_F(IpDialogTest, ChecksAddressThenMaskThenGateway) {
    IPConfigurationDialog dialog(nullptr, false, false, StaticConfig());
    ScriptedKeys keys(Keys({Repeat(KEY_DOWN, 3),
                            Typed("10.1.2"),
                            {KEY_DOWN},
                            Typed("255.0.255.0"),
                            {KEY_DOWN, KEY_BACKSPACE},
                            {KeyEnter, KeyEnter},
                            Typed("10.1.2.3"),
                            {KeyEnter, KeyEnter},
                            Typed("255.255.0.0"),
                            {KeyEnter, KeyEnter},
                            Typed("10.1.0.1"),
                            {KeyEnter}}));
    EXPECT_EQ(Tesk::Run(dialog), 1);
    EXPECT_EQ(keys.left(), 0u);
    EXPECT_EQ(keys.messages(kTitle),
              (Strings{"Invalid IP address", "Invalid subnet", "Invalid gateway address"}));
    const HN::IpConfig& r = dialog.result();
    EXPECT_FALSE(dialog.dhcp() || dialog.none());
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
    }
}

// In DHCP mode Down stops at the last mode; static opens the fields, which
// take only digits and dots, sixteen at most.
TEST_F(IpDialogTest, FieldsAreClosedOutsideStaticModeAndTakeOnlyDigitsAndDots) {
    IPConfigurationDialog dialog(nullptr, false, true, StaticConfig());
    ScriptedKeys keys(Keys({Repeat(KEY_DOWN, 4),
                            {' ', KEY_DOWN},
                            Typed("10.x 0.a0.9"),
                            {KEY_DOWN},
                            Typed("1234567890.234567"),
                            {KeyEscape}}));
    EXPECT_EQ(Tesk::Run(dialog), 0);
    // Items: three modes, a blank line, the three fields.
    EXPECT_EQ(dynamic_cast<const InputItem&>(dialog.items().at(4)).value(), "10.0.0.9");
    EXPECT_EQ(dynamic_cast<const InputItem&>(dialog.items().at(5)).value(), "1234567890.23456");
}

}  // namespace
