// The DNS dialog: servers typed as text become IPv4 or IPv6 servers, an empty
// field clears one, wrong text is refused on its field, and the automatic
// choice exists only with DHCP.
#include <gtest/gtest.h>

#include "network/dns_dialog.h"
#include "tests/network/window_dialog_keys.h"
#include "ui/keys.h"

namespace {

using namespace Tesk;
using namespace NetworkTest;
namespace HN = HostCtl::Network;
using Strings = std::vector<std::string>;

constexpr char kTitle[] = "DNS Configuration";

class DnsDialogTest : public TeskTest::ScreenTest {};

TEST_F(DnsDialogTest, ServersAreTakenByTheirTextAndAnEmptyFieldClears) {
    const HN::Ipv4Address primary("192.168.10.2");
    const HN::Ipv4Address alternate("192.168.10.3");
    DNSConfigurationDialog dialog(nullptr, false, false, &primary, &alternate, "host01");
    // Manual is fixed without DHCP: the cursor starts on the primary server.
    ScriptedKeys keys(Keys({Typed("2001:db8::53"),
                            {KEY_DOWN, KEY_BACKSPACE, KEY_DOWN},
                            Typed("host-02.lab"),
                            {KeyEnter}}));
    EXPECT_EQ(Tesk::Run(dialog), 1);
    auto p = dialog.takePrimary();
    ASSERT_TRUE(p);
    EXPECT_TRUE(p->IsIpv6());
    EXPECT_EQ(p->GetStringAddress(), "2001:db8::53");
    EXPECT_FALSE(dialog.takeAlternate());
    EXPECT_EQ(dialog.hostname(), "host-02.lab");
    EXPECT_FALSE(dialog.dhcpDns());

    DNSConfigurationDialog second(nullptr, false, false, nullptr, nullptr, "h");
    ScriptedKeys more(Keys({Typed("10.0.0.53"), {KeyEnter}}));
    EXPECT_EQ(Tesk::Run(second), 1);
    auto v4 = second.takePrimary();
    ASSERT_TRUE(v4);
    EXPECT_TRUE(v4->IsIpv4());
    EXPECT_EQ(v4->GetStringAddress(), "10.0.0.53");
}

TEST_F(DnsDialogTest, RefusesTheFirstWrongServerOnItsField) {
    DNSConfigurationDialog dialog(nullptr, false, false, nullptr, nullptr, "h");
    ScriptedKeys keys(Keys({Typed("10.0.0"),
                            {KEY_DOWN},
                            Typed("1:2:3"),
                            {KeyEnter, KeyEnter},
                            Typed("10.0.0.1"),
                            {KeyEnter, KeyEnter},
                            Typed("::1"),
                            {KeyEnter}}));
    EXPECT_EQ(Tesk::Run(dialog), 1);
    EXPECT_EQ(keys.left(), 0u);
    EXPECT_EQ(keys.messages(kTitle),
              (Strings{"Invalid DNS server address", "Invalid DNS server address"}));
    EXPECT_EQ(dialog.takePrimary()->GetStringAddress(), "10.0.0.1");
    EXPECT_EQ(dialog.takeAlternate()->GetStringAddress(), "::1");
}

TEST_F(DnsDialogTest, AutomaticNeedsDhcp) {
    const HN::Ipv4Address primary("192.168.10.2");
    {
        // Static IPv4: Up cannot reach the modes, Space does nothing.
        DNSConfigurationDialog dialog(nullptr, true, false, &primary, nullptr, "h");
        ScriptedKeys keys({KEY_UP, KEY_UP, ' ', KeyEnter});
        EXPECT_EQ(Tesk::Run(dialog), 1);
        EXPECT_FALSE(dialog.dhcpDns());
        EXPECT_EQ(dialog.takePrimary()->GetStringAddress(), "192.168.10.2");
    }
    {
        // With DHCP the first entry is the automatic choice.
        DNSConfigurationDialog dialog(nullptr, false, true, &primary, nullptr, "h");
        ScriptedKeys keys({' ', KeyEnter});
        EXPECT_EQ(Tesk::Run(dialog), 1);
        EXPECT_TRUE(dialog.dhcpDns());
    }
}

TEST_F(DnsDialogTest, AnIpv6SecondServerIsLabelledSoUntilEmptied) {
    const HN::Ipv4Address v4("192.168.10.2");
    const HN::Ipv6Address v6("2001:db8::53");
    DNSConfigurationDialog dialog(nullptr, false, false, &v4, &v6, "h");
    InputItem& alternate = static_cast<InputItem&>(dialog.items().at(4));
    EXPECT_EQ(alternate.label(), "IPv6 DNS Server");
    // Emptied to fewer than three characters, the field is an alternate again.
    ScriptedKeys keys({KEY_DOWN, KEY_BACKSPACE, KeyEscape});
    EXPECT_EQ(Tesk::Run(dialog), 0);
    EXPECT_EQ(alternate.label(), "Alternate DNS Server");
}

}  // namespace
