// What only the simulated host does, seen in its state: the addresses its
// DHCP servers and router hand out, the effects of the operations whose
// result no interface reads back, the account store and the length of a host
// label. The behaviour every backend shares is the contract's (tests/contract).
#include <gtest/gtest.h>

#include <functional>

#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "tests/hostctl/fixture.h"

namespace {

using namespace HostCtl::Network;
using HostCtl::Lib::HostCtlException;
using TeskTest::Json;

class SimulatedHostTest : public TeskTest::HostRootTest {
protected:
    HostCtl::Backend& host() { return HostCtl::TheBackend(); }
    std::unique_ptr<ZrkNic> Management() {
        auto nic = host().GetNetworkInfo()->GetManagementInterface();
        if (!nic) throw std::logic_error("no management interface");
        nic->Refresh();
        return nic;
    }
};

std::vector<std::string> Addresses(const IpConfig& c, Ipv6AddressType type) {
    std::vector<std::string> out;
    for (const auto& n : c.GetIpv6Networks())
        if (n.GetIpv6AddressType() == type) out.push_back(n.GetStringAddress());
    return out;
}

TEST_F(SimulatedHostTest, LearntAddressesComeFromTheServersInTheState) {
    auto nic = Management();
    IpConfig config = nic->GetConfiguredIpConfig();
    EXPECT_EQ(Addresses(nic->GetIpConfig(), Ipv6AddressType::LinkLayer),
              std::vector<std::string>{"fe80::5a:4bff:fea1:1000/64"})
        << "made from the MAC address";
    config.SetUseDhcp(true);
    config.SetDhcpDns(true);
    config.SetUseIpv6RouterAdvertised(true);
    config.SetUseIpv6Dhcp(true);
    nic->SetIpConfig(config);
    nic->Refresh();
    IpConfig current = nic->GetIpConfig();
    EXPECT_EQ(current.GetIpv4Address().GetStringAddress(), "192.168.10.150");
    EXPECT_EQ(root().stateValue("/network/dns/nameServers"), Json::array({"192.168.10.2"}));
    EXPECT_EQ(Addresses(current, Ipv6AddressType::Autoconf),
              std::vector<std::string>{"2001:db8:10:0:5a:4bff:fea1:1000/64"});
    EXPECT_EQ(Addresses(current, Ipv6AddressType::Dhcp),
              std::vector<std::string>{"2001:db8:10::150/64"});
    EXPECT_EQ(root().stateValue("/network/zrkNics/0/config/ipv6Addresses")->size(), 1u)
        << "only the static address is stored";
}

// The operations whose effect no interface reads back change the state.
TEST_F(SimulatedHostTest, WriteOnlyOperationsShowInTheState) {
    auto info = host().GetSystemInfo();
    auto dns = host().GetDnsConfig("defaultNetStack");
    const struct {
        std::function<void()> call;
        const char* pointer;
        Json value;
    } cases[] = {
        {[&] { info->SetSystemAlert("Hagentd core dump completed"); }, "/systemInfo/alerts",
         Json::array({"Hagentd core dump completed"})},
        {[&] { info->LoadKeyboardMappings("German"); }, "/systemInfo/keyboard/loadedMappings",
         "German"},
        {[&] { info->GetFirewallRulesetById("sshServer").SetEnabled(true); },
         "/systemInfo/firewall/rulesets/0/enabled", true},
        {[&] { info->GetFirewallRulesetById("sshServer").Apply(); },
         "/systemInfo/firewall/rulesets/0/active", true},
        {[&] { host().GetNetworkInfo()->DisableNetDumper(); }, "/network/netDumper/enabled", false},
        {[&] { host().GetNetworkInfo()->SetZrkIpv6Enabled(false); },
         "/network/ipv6EnabledAfterReboot", false},
        {[&] { dns->SetHostname("solo", false); }, "/network/dns/saved/hostname", "tesk-host01"},
        {[&] { dns->SaveConfig(); }, "/network/dns/saved/hostname", "solo"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pointer);
        c.call();
        EXPECT_EQ(root().stateValue(c.pointer), c.value);
    }
}

TEST_F(SimulatedHostTest, AccountStoreTakesTheOutcomesButNeverTheHashes) {
    EXPECT_FALSE(root().stateValue("/users/0/password")) << "no clear text in the state";
    const std::string hash = TeskTest::PasswordHash("n3w-Secret");
    root().writeFile("/etc/simhost/users",
                     "root:" + hash + ":success\nexpired:" + hash + ":success\n");
    HostCtl::TheBackend().StoreUserAccountsToCs();
    EXPECT_FALSE(root().stateValue("/users/0/passwordHash")) << "hashes stay in the user file";
    const Json expired = root().stateValue("/users/2").value();
    ASSERT_EQ(expired["name"], "expired");
    EXPECT_EQ(expired["outcome"], "success");
    EXPECT_FALSE(expired.contains("passwordHash"));
    EXPECT_EQ(root().stateValue("/userAccountStore/storeCount"), Json(1));
}

// A DNS label holds at most 63 characters (the refusals every backend shares:
// the contract's).
TEST_F(SimulatedHostTest, HostLabelsEndAtSixtyThreeCharacters) {
    auto dns = host().GetDnsConfig("defaultNetStack");
    EXPECT_NO_THROW(dns->SetHostname(std::string(63, 'a'), false));
    EXPECT_THROW(dns->SetHostname(std::string(64, 'b'), false), HostCtlException);
    EXPECT_THROW(dns->SetFqdn("host." + std::string(64, 'c') + ".example", false, ""),
                 HostCtlException);
    EXPECT_EQ(root().stateValue("/network/dns/hostname"), Json(std::string(63, 'a')));
}

}  // namespace
