// Applying the management network while the host fails one call: the failing
// group is logged with its prefix and shown, every other group is still
// applied, and the state file stays whole.
#include "tests/network/apply_fixture.h"

namespace TeskTest {
namespace {

using HN::Ipv4Address;
using HN::Ipv6Address;

// Everything the full change writes, by name.
const std::vector<std::string> kEffects = {"adapters", "mac",    "vlan",     "address",
                                           "gateway",  "ipv6gw", "hostname", "servers",
                                           "suffixes", "saved",  "up"};

struct FaultCase {
    std::string fault;
    std::string message;               // logged and shown
    std::vector<std::string> missing;  // effects the failure leaves out
};

class ApplyFaultTest : public ApplyTest, public ::testing::WithParamInterface<FaultCase> {
protected:
    bool Has(const std::string& effect) {
        const Json net = Net();
        const Json nic = Nic();
        const Json dns = net["dns"];
        if (effect == "adapters")
            return net["standardSwitches"][0]["uplinks"] == Json({"pnic0", "pnic2"});
        if (effect == "mac") return nic["mac"] == net["pnics"][2]["mac"];
        if (effect == "vlan") return ManagementGroup()["vlanId"] == 30;
        if (effect == "address") return nic["config"]["ipv4Address"] == "192.168.10.50";
        if (effect == "gateway") return net["routing"]["ipv4Gateway"] == "192.168.10.254";
        if (effect == "ipv6gw") return net["routing"]["ipv6Gateway"] == "2001:db8:10::fe";
        if (effect == "hostname") return dns["hostname"] == "tesk-host05";
        if (effect == "servers") return dns["nameServers"] == Json({"192.168.10.9"});
        if (effect == "suffixes")
            return dns["searchDomains"] == Json({"lab.example", "a.example", "b.example"});
        if (effect == "saved") {
            Json running = dns;
            running.erase("saved");
            return dns["saved"] == running;
        }
        if (effect == "up") return nic["up"] == true;
        ADD_FAILURE() << "unknown effect " << effect;
        return false;
    }
};

TEST_P(ApplyFaultTest, FailingGroupIsShownAndTheRestApplied) {
    const FaultCase& c = GetParam();
    ASSERT_EQ(root().state()["network"]["pnics"][2]["name"], "pnic2");
    auto p = FullChange();
    root().setFault(c.fault, {{"exception", "boom"}});
    Apply(p, {Tesk::KeyEnter});

    ASSERT_EQ(screens_.size(), 1u);
    EXPECT_NE(screens_[0].find("Enable Management Network: Error"), std::string::npos);
    EXPECT_NE(screens_[0].find(c.message), std::string::npos) << screens_[0];
    const auto errors = root().logLinesWith(c.message);
    EXPECT_EQ(errors.size(), 1u) << root().logTail();

    for (const auto& effect : kEffects) {
        const bool missing =
            std::find(c.missing.begin(), c.missing.end(), effect) != c.missing.end();
        EXPECT_EQ(Has(effect), !missing) << effect;
    }
    // The management service is refreshed whatever failed.
    EXPECT_EQ(root().state()["hostAgent"].value("refreshes", 0), 1);
}

INSTANTIATE_TEST_SUITE_P(
    Groups, ApplyFaultTest,
    ::testing::Values(
        FaultCase{"portGroup.addUplink", "Setting adapters failed: boom", {"adapters"}},
        FaultCase{"vswitchInfo.getVirtualSwitches", "Setting adapters failed: boom", {"adapters"}},
        FaultCase{"pnic.refresh", "Setting mac address of pnic failed: boom", {"mac"}},
        FaultCase{
            "routing.getZerkelDefaultGateway", "Setting default gateway failed: boom", {"gateway"}},
        FaultCase{"dns.addUserSearchDomain", "Setting DNS failed: boom", {"suffixes"}},
        FaultCase{
            "zrkNic.setMacAddressFromPnic", "Setting mac address of pnic failed: boom", {"mac"}},
        FaultCase{"portGroup.setVlanId", "Setting VlanID failed: boom", {"vlan"}},
        FaultCase{
            "zrkNic.getConfiguredIpConfig", "Setting ip configuration failed: boom", {"address"}},
        FaultCase{"network.setZrkIpv6Enabled", "Setting ipv6 configuration failed: boom", {}},
        FaultCase{"zrkNic.setIpConfig", "Setting ip/ipv6 configuration failed: boom", {"address"}},
        FaultCase{
            "routing.setZerkelDefaultGateway", "Setting default gateway failed: boom", {"gateway"}},
        FaultCase{"routing.setIpv6ZerkelDefaultGateway",
                  "Setting default ipv6 gateway failed: boom",
                  {"ipv6gw"}},
        FaultCase{"zrkNic.interfaceDown", "Setting VlanID failed: boom", {}},
        // Down but not up again: the second attempt fails too and is logged.
        FaultCase{"zrkNic.interfaceUp", "Setting VlanID failed: boom", {"up"}},
        FaultCase{"dns.setHostname", "Setting DNS failed: boom", {"hostname"}},
        FaultCase{"dns.addUserNameServer", "Setting DNS failed: boom", {"servers"}},
        FaultCase{"dns.setSearchDomainsString", "Setting DNS failed: boom", {"suffixes"}},
        FaultCase{"dns.saveConfig", "Setting DNS failed: boom", {"saved"}}),
    [](const auto& info) {
        std::string name = info.param.fault;
        std::replace(name.begin(), name.end(), '.', '_');
        return name;
    });

TEST_F(ApplyTest, FailingQueriesOnlyLogAndSkipTheirStep) {
    auto p = Seed();
    p.adapters = {"pnic1"};
    p.vlanId = 40;
    root().setFault("portGroup.getTeamingPolicy", {{"exception", "no policy"}});
    root().setFault("portGroup.getVlanId", {{"exception", "no vlan"}});
    Apply(p);  // no dialog

    EXPECT_TRUE(root().hasLogLine("Getting uplinks failed: no policy"));
    EXPECT_TRUE(root().hasLogLine("Getting VlanID failed: no vlan"));
    root().setFault("portGroup.getTeamingPolicy", nullptr);
    root().setFault("portGroup.getVlanId", nullptr);
    EXPECT_EQ(Net()["standardSwitches"][0]["uplinks"], Json({"pnic0", "pnic1"}));
    EXPECT_EQ(ManagementGroup()["vlanId"], 0);
    EXPECT_FALSE(Logged("Changed vlan"));
    // Without the current uplinks the first pending adapter gives the MAC.
    EXPECT_EQ(Nic()["mac"], Net()["pnics"][1]["mac"]);
}

TEST_F(ApplyTest, NewUplinksOnDhcpRenewTheLease) {
    UseProfile("dhcp");
    root().editState([](Json& s) {
        s["network"]["dhcpServer"] = {{"ipv4Address", "192.168.10.160"},
                                      {"ipv4Netmask", "255.255.255.0"},
                                      {"ipv4Gateway", "192.168.10.1"},
                                      {"answers", true}};
    });
    auto p = Seed();
    ASSERT_TRUE(p.mode.GetUseDhcp());
    p.adapters.push_back("pnic3");
    Apply(p);
    EXPECT_FALSE(Logged("Switching to DHCP"));
    EXPECT_TRUE(Logged("Renew DHCP lease on zrk0"));
    EXPECT_EQ(Nic()["current"]["ipv4Address"], "192.168.10.160");
}

}  // namespace
}  // namespace TeskTest
