// The management network window's dialogs driven with scripted keys in this
// process: what each field takes, which values are refused (with the message
// shown and the field that gets the cursor) and what the dialog returns.
#include <gtest/gtest.h>

#include <deque>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "network/dns_dialog.h"
#include "network/ip_dialog.h"
#include "network/ipv6_dialog.h"
#include "network/suffixes_dialog.h"
#include "network/vlan_dialog.h"
#include "tests/ui/screen.h"
#include "ui/dialog.h"
#include "ui/keys.h"

namespace {

using namespace Tesk;
namespace HN = HostCtl::Network;
using Strings = std::vector<std::string>;

// A key script: characters type themselves ("\n" is <Enter>, "\x1b" <Esc>),
// <Down>, <Up>, <End>, <BS> (Backspace) and <F5> are those keys, and "*n"
// repeats a key n times ("<Down*3>", "<7*40>").
std::deque<int> Script(std::string_view text) {
    static const std::map<std::string, int, std::less<>> named = {{"Down", KEY_DOWN},
                                                                  {"Up", KEY_UP},
                                                                  {"End", KEY_END},
                                                                  {"BS", KEY_BACKSPACE},
                                                                  {"F5", KEY_F(5)}};
    std::deque<int> keys;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '<') {
            keys.push_back(static_cast<unsigned char>(text[at]));
            continue;
        }
        const std::size_t end = text.find('>', at);
        const std::string_view token = text.substr(at + 1, end - at - 1);
        const std::string_view name = token.substr(0, token.find('*'));
        const int times =
            name.size() < token.size() ? std::stoi(std::string(token.substr(name.size() + 1))) : 1;
        const int key =
            name.size() == 1 ? static_cast<unsigned char>(name[0]) : named.find(name)->second;
        keys.insert(keys.end(), static_cast<std::size_t>(times), key);
        at = end;
    }
    return keys;
}

// Answers every key read with the next key of a script and notes the
// title of the window that asked: so a test sees which message interrupted
// the dialog and where the dialog went on. Running out of keys ends the run.
class ScriptedKeys {
public:
    explicit ScriptedKeys(std::string_view script) : input_(Script(script)) {
        input_.onRead = [this] {
            auto* dialog = dynamic_cast<Tesk::Dialog*>(Tesk::CurrentWindow());
            titles.push_back(dialog ? dialog->title() : std::string());
        };
    }
    // Every key was read: the dialog asked as often as the test expected.
    ~ScriptedKeys() { EXPECT_EQ(input_.left(), 0u) << "keys left"; }

    // The windows' titles, one per key read.
    std::vector<std::string> titles;

    // The titles of the messages shown over the dialog titled dialogTitle.
    std::vector<std::string> messages(const std::string& dialogTitle) const {
        std::vector<std::string> shown;
        std::string previous = dialogTitle;
        for (const auto& t : titles) {
            if (t != dialogTitle && t != previous) shown.push_back(t);
            previous = t;
        }
        return shown;
    }

private:
    TeskTest::FakeInput input_;
};

class VlanDialogTest : public TeskTest::ScreenTest {};
class IpDialogTest : public TeskTest::ScreenTest {};
class Ipv6DialogTest : public TeskTest::ScreenTest {};
class DnsDialogTest : public TeskTest::ScreenTest {};

TEST_F(VlanDialogTest, RefusesZeroAndFiveDigitIdsWarnsOf4095AndTakesTheRest) {
    struct Case {
        int start;
        const char* keys;
        int result, value;
        Strings messages;
    };
    const Case cases[] = {
        {0, "0\n\n<BS>99999\n\n<BS*5>42\n", 1, 42, {"Invalid VLAN ID", "Invalid VLAN ID"}},
        {20, "4095\n\n", 1, 4095, {"Warning"}},
        {20, "<BS>\n", 1, 0, {}},
        // Only digits reach the field, and a held key stops at five.
        {0, "1a -.x2<7*40><Up><F5>\n\n\x1b", 0, 12777, {"Invalid VLAN ID"}},
    };
    for (const Case& c : cases) {
        VlanDialog dialog(nullptr, c.start);
        ScriptedKeys keys(c.keys);
        EXPECT_EQ(Tesk::Run(dialog), c.result) << c.value;
        EXPECT_EQ(keys.messages("VLAN (optional)"), c.messages) << c.value;
        EXPECT_EQ(dialog.value(), c.value);
    }
}

HN::IpConfig StaticConfig() {
    HN::IpConfig c;
    c.SetIpv4Address(HN::Ipv4Address("192.168.10.21"));
    c.SetIpv4Netmask(HN::Ipv4Address("255.255.255.0"));
    c.SetIpv4Gateway(HN::Ipv4Address("192.168.10.1"));
    return c;
}

// Each refusal puts the cursor on its field, where the next text goes.
TEST_F(IpDialogTest, ChecksAddressThenMaskThenGateway) {
    IPConfigurationDialog dialog(nullptr, false, false, StaticConfig());
    ScriptedKeys keys(
        "<Down*3>10.1.2<Down>255.0.255.0<Down><BS>\n\n10.1.2.3\n\n255.255.0.0\n\n10.1.0.1\n");
    EXPECT_EQ(Tesk::Run(dialog), 1);
    EXPECT_EQ(keys.messages("IPv4 Configuration"),
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
        ScriptedKeys keys(mode == 0 ? "<Down*3>1.2<Up*3> \n" : "<Down*3>1.2<Up*2> \n");
        EXPECT_EQ(Tesk::Run(dialog), 1) << mode;
        EXPECT_TRUE(keys.messages("IPv4 Configuration").empty()) << mode;
        EXPECT_EQ(dialog.none(), mode == 0);
        EXPECT_EQ(dialog.dhcp(), mode == 1);
        EXPECT_EQ(dialog.result().GetIpv4Gateway().GetAddress(), 0u) << mode;
    }
}

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

TEST_F(Ipv6DialogTest, StaticFieldsHoldTheFirstThreeStaticAddressesAndComeBackOnOk) {
    IPv6ConfigurationDialog dialog(nullptr, true, HN::IpConfig(), Addresses());
    ScriptedKeys keys("\n");
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
    // The three address fields start on the fourth entry down; after each
    // refusal the next text goes to the refused field (the first, then the
    // second).
    ScriptedKeys keys(
        "<Down*3>fe80::1/64<Down>2001:db8::1\n\n2001:db8::99/64\n\n2001:db8::98/64\n");
    EXPECT_EQ(Tesk::Run(dialog), 1);
    EXPECT_EQ(keys.messages("IPv6 Configuration"),
              (Strings{"Invalid scope", "Invalid IP address"}));
    EXPECT_TRUE(dialog.addressesEdited());
    const Strings texts = Texts(dialog.result());
    EXPECT_EQ(std::count(texts.begin(), texts.end(), "2001:db8::99/64"), 1);
    EXPECT_EQ(std::count(texts.begin(), texts.end(), "2001:db8::98/64"), 1);
    EXPECT_EQ(std::count(texts.begin(), texts.end(), "2001:db8::a/64"), 0);
}

TEST_F(DnsDialogTest, ServersAreTakenByTheirTextAndAnEmptyFieldClears) {
    const HN::Ipv4Address primary("192.168.10.2");
    const HN::Ipv4Address alternate("192.168.10.3");
    DNSConfigurationDialog dialog(nullptr, false, false, &primary, &alternate, "host01");
    // Manual is fixed without DHCP: the cursor starts on the primary server.
    ScriptedKeys keys("2001:db8::53<Down><BS><Down>host-02.lab\n");
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
    ScriptedKeys keys("10.0.0<Down>1:2:3\n\n10.0.0.1\n\n::1\n");
    EXPECT_EQ(Tesk::Run(dialog), 1);
    EXPECT_EQ(keys.messages("DNS Configuration"),
              (Strings{"Invalid DNS server address", "Invalid DNS server address"}));
    auto primary = dialog.takePrimary();
    EXPECT_TRUE(primary->IsIpv4());
    EXPECT_EQ(primary->GetStringAddress(), "10.0.0.1");
    EXPECT_EQ(dialog.takeAlternate()->GetStringAddress(), "::1");
}

TEST_F(DnsDialogTest, SuffixesTakeNamesBlanksAndCommasOnly) {
    SuffixesDialog dialog(nullptr, "lab.example");
    ScriptedKeys keys("<End>, corp-2.example;{x}_@ ops.Example\n");
    EXPECT_EQ(Tesk::Run(dialog), 1);
    EXPECT_EQ(dialog.text(), "lab.example, corp-2.examplex ops.Example");
}

}  // namespace
