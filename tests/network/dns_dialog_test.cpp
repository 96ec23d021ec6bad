// The DNS dialogs: servers typed as text become IPv4 or IPv6 servers, an
// empty field clears one, wrong text is refused on its field; the characters
// a search list may hold.
#include <gtest/gtest.h>

#include "network/dns_dialog.h"
#include "network/suffixes_dialog.h"
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
    auto primary = dialog.takePrimary();
    EXPECT_TRUE(primary->IsIpv4());
    EXPECT_EQ(primary->GetStringAddress(), "10.0.0.1");
    EXPECT_EQ(dialog.takeAlternate()->GetStringAddress(), "::1");
}

// A host name that is no DNS name is refused on its own field (the rules
// themselves: apply_checks_test.cpp).
TEST_F(DnsDialogTest, RefusesAHostNameThatIsNoDnsName) {
    const HN::Ipv4Address primary("192.168.10.2");
    DNSConfigurationDialog dialog(nullptr, false, false, &primary, nullptr, "a..b");
    ScriptedKeys keys({KeyEnter, KeyEnter, KeyEscape});
    EXPECT_EQ(Tesk::Run(dialog), 0);
    EXPECT_EQ(keys.messages(kTitle), Strings{"Invalid Hostname"});
}

TEST_F(DnsDialogTest, SuffixesTakeNamesBlanksAndCommasOnly) {
    SuffixesDialog dialog(nullptr, "lab.example");
    ScriptedKeys keys(Keys({{KEY_END}, Typed(", corp-2.example;{x}_@ ops.Example"), {KeyEnter}}));
    EXPECT_EQ(Tesk::Run(dialog), 1);
    EXPECT_EQ(dialog.text(), "lab.example, corp-2.examplex ops.Example");
}

}  // namespace
