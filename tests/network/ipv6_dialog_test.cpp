// The IPv6 dialog: which addresses fill the static fields, and the checks of
// a static configuration.
#include <gtest/gtest.h>

#include "network/ipv6_dialog.h"
#include "tests/network/window_dialog_keys.h"
#include "ui/keys.h"

namespace {

using namespace Tesk;
using namespace NetworkTest;
namespace HN = HostCtl::Network;
using Strings = std::vector<std::string>;

constexpr char kTitle[] = "IPv6 Configuration";
// Selectable entries: disable, dynamic, DHCPv6 box, static, three addresses,
// gateway.
constexpr int kFirstAddress = 4;

HN::IpConfig Addresses() {
    HN::IpConfig c;
    c.EnableIpv6();
    c.SetIpv6Networks({
        HN::Ipv6Network(HN::Ipv6Address("fe80::1"), 64, HN::Ipv6AddressType::LinkLayer,
                        HN::Ipv6Scope::LinkLocal),
        HN::Ipv6Network(HN::Ipv6Address("2001:db8::a"), 64),
        HN::Ipv6Network(HN::Ipv6Address("2001:db8::b"), 64, HN::Ipv6AddressType::Autoconf),
        HN::Ipv6Network(HN::Ipv6Address("2001:db8::c"), 48),
        HN::Ipv6Network(HN::Ipv6Address("2001:db8::d"), 64),
        HN::Ipv6Network(HN::Ipv6Address("2001:db8::e"), 64),
    });
    c.SetIpv6Gateway(HN::Ipv6Address("2001:db8::1"));
    return c;
}

std::vector<std::string> Texts(const HN::IpConfig& c) {
    std::vector<std::string> texts;
    for (const auto& n : c.GetIpv6Networks()) texts.push_back(n.GetStringAddress());
    return texts;
}

class Ipv6DialogTest : public TeskTest::ScreenTest {};

TEST_F(Ipv6DialogTest, StaticFieldsHoldTheFirstThreeStaticAddressesAndComeBackOnOk) {
    IPv6ConfigurationDialog dialog(nullptr, true, HN::IpConfig(), Addresses());
    ScriptedKeys keys({KeyEnter});
    EXPECT_EQ(Tesk::Run(dialog), 1);
    EXPECT_FALSE(dialog.addressesEdited());
    // Link-local and learnt addresses stay; the fields' addresses are added
    // back after them, the fourth static one was never in a field.
    EXPECT_EQ(Texts(dialog.result()),
              (Strings{"fe80::1/64", "2001:db8::b/64", "2001:db8::e/64", "2001:db8::a/64",
                       "2001:db8::c/48", "2001:db8::d/64"}));
    EXPECT_EQ(dialog.result().GetIpv6Gateway().GetStringAddress(), "2001:db8::1");
}

TEST_F(Ipv6DialogTest, RefusesLinkLocalAndPrefixlessAddressesOnTheirField) {
    IPv6ConfigurationDialog dialog(nullptr, true, HN::IpConfig(), Addresses());
    ScriptedKeys keys(Keys({Repeat(KEY_DOWN, kFirstAddress - 1),
                            Typed("fe80::1/64"),
                            {KEY_DOWN},
                            Typed("2001:db8::1"),
                            {KeyEnter, KeyEnter},
                            // Back on the first field.
                            Typed("2001:db8::99/64"),
                            {KeyEnter, KeyEnter},
                            // Now the second.
                            Typed("2001:db8::98/64"),
                            {KeyEnter}}));
    EXPECT_EQ(Tesk::Run(dialog), 1);
    EXPECT_EQ(keys.left(), 0u);
    EXPECT_EQ(keys.messages(kTitle), (Strings{"Invalid scope", "Invalid IP address"}));
    EXPECT_TRUE(dialog.addressesEdited());
    const Strings texts = Texts(dialog.result());
    EXPECT_EQ(std::count(texts.begin(), texts.end(), "2001:db8::99/64"), 1);
    EXPECT_EQ(std::count(texts.begin(), texts.end(), "2001:db8::98/64"), 1);
    EXPECT_EQ(std::count(texts.begin(), texts.end(), "2001:db8::a/64"), 0);
}

}  // namespace
