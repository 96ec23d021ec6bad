// The DNS dialog refuses a host name that is no DNS name on its own field,
// before anything is applied.
#include <gtest/gtest.h>

#include "network/dns_dialog.h"
#include "tests/network/window_dialog_keys.h"
#include "ui/keys.h"

namespace {

using namespace NetworkTest;

class HostnameFieldTest : public TeskTest::ScreenTest {};

TEST_F(HostnameFieldTest, RefusesNamesThatAreNoDnsNames) {
    const HostCtl::Network::Ipv4Address primary("192.168.10.2");
    for (const std::string& bad :
         std::initializer_list<std::string>{"", "-", ".", "a..b", std::string(255, 'a')}) {
        Tesk::DNSConfigurationDialog dialog(nullptr, false, false, &primary, nullptr, bad);
        // OK is refused with a message; <Esc> then leaves.
        ScriptedKeys keys({Tesk::KeyEnter, Tesk::KeyEnter, Tesk::KeyEscape});
        EXPECT_EQ(Tesk::Run(dialog), 0) << '"' << bad << '"';
        EXPECT_EQ(keys.messages("DNS Configuration"), std::vector<std::string>{"Invalid Hostname"})
            << '"' << bad << '"';
    }
}

}  // namespace
