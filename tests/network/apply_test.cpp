// Applying the management network: what each kind of change writes to the
// host, in which order, and what it leaves alone. (The apply question's
// answers: window_test.cpp.)
#include "tests/network/apply_fixture.h"
#include "ui/keys.h"

namespace TeskTest {
namespace {

using HN::Ipv4Address;
using HN::Ipv6Address;

int Refreshes(Json state) {
    return state["hostAgent"].is_object() ? state["hostAgent"].value("refreshes", 0) : 0;
}

TEST_F(ApplyTest, EveryStepLogsBeforeItActsInTheFixedOrder) {
    auto p = FullChange();
    Apply(p);
    const std::vector<std::string> order = {
        "Setting adapters to pnic2 pnic0",
        "Setting ipv4 configuration to 192.168.10.50 255.255.255.0 on zrk0",
        "Setting ipv6 configuration",
        "Setting default gateway to 192.168.10.254",
        "Setting default ipv6 gateway to 2001:db8:10::fe",
        "Changed vlan, restarting management interface",
        "Setting hostname to tesk-host05",
        "Setting nameservers to 192.168.10.9 ",
        "Setting suffixes to a.example b.example",
        "rux-cmd internalsvc/refresh",
    };
    int previous = -1;
    for (const auto& line : order) {
        const int at = LineOf(line);
        EXPECT_GT(at, previous) << line << "\n" << root().logTail("/var/log/syslog.log", 30);
        previous = at;
    }
    EXPECT_FALSE(Logged("failed"));
}

// Changed names alone write the names and save them; the groups that did
// not change are not touched.
TEST_F(ApplyTest, NamesAndSuffixes) {
    auto p = Seed();
    const Json before = Net();
    const int refreshesBefore = Refreshes(root().state());
    // A dotted name is a fully qualified one: the domain follows it, and the
    // search list starts with the new domain.
    p.hostname = "zrk7.corp.example";
    p.suffixText = " a.example, b.example  c.example,";
    p.primaryDns = std::make_unique<Ipv4Address>("0.0.0.0");
    p.alternateDns = std::make_unique<Ipv6Address>("2001:db8:10::54");
    Apply(p);
    for (const char* line : {"Setting ipv4 configuration", "Setting default gateway",
                             "Setting default ipv6 gateway", "Changed vlan", "Moving adapter"})
        EXPECT_FALSE(Logged(line)) << line;
    EXPECT_EQ(summaryRebuilt_, 0);
    EXPECT_EQ(Nic()["config"], before["zrkNics"][0]["config"]);
    EXPECT_EQ(Net()["routing"], before["routing"]);
    EXPECT_EQ(Net()["standardSwitches"], before["standardSwitches"]);
    EXPECT_EQ(Refreshes(root().state()), refreshesBefore + 1);

    const Json dns = Net()["dns"];
    EXPECT_EQ(dns["hostname"], "zrk7");
    EXPECT_EQ(dns["domain"], "corp.example");
    EXPECT_EQ(dns["searchDomains"], Json({"corp.example", "a.example", "b.example", "c.example"}));
    // 0.0.0.0 is no server; the other one is the only one left.
    EXPECT_EQ(dns["nameServers"], Json::array());
    EXPECT_EQ(dns["ipv6NameServers"], Json({"2001:db8:10::54"}));
    EXPECT_TRUE(Logged("Setting nameservers to 0.0.0.0 2001:db8:10::54"));
    EXPECT_EQ(dns["saved"]["searchDomains"], dns["searchDomains"]);
    EXPECT_EQ(dns["saved"]["domain"], "corp.example");

    // "::" is no server either, and no server at all empties both lists.
    auto q = Seed();
    q.primaryDns = std::make_unique<Ipv6Address>("::");
    q.alternateDns.reset();
    q.suffixText = "";
    Apply(q);
    EXPECT_EQ(Net()["dns"]["ipv6NameServers"], Json::array());
    EXPECT_EQ(Net()["dns"]["searchDomains"], Json({"corp.example"}));
    EXPECT_TRUE(Logged("Setting nameservers to :: "));
}

TEST_F(ApplyTest, DnsByDhcpWritesNoNamesButSuffixes) {
    auto p = Seed();
    p.mode.SetUseDhcp(true);
    p.mode.SetDhcpDns(true);
    p.hostname = "ignored";
    p.suffixText = "x.example";
    Apply(p);

    EXPECT_FALSE(Logged("Setting hostname"));
    EXPECT_FALSE(Logged("Setting nameservers"));
    EXPECT_TRUE(Logged("Setting suffixes to x.example"));
    // Static to DHCP: the lease is taken and with it the name servers.
    EXPECT_TRUE(Logged("Switching to DHCP on zrk0"));
    const Json nic = Nic();
    EXPECT_TRUE(nic["config"]["dhcp"]);
    EXPECT_TRUE(nic["config"]["dhcpDns"]);
    EXPECT_EQ(nic["current"]["ipv4Address"], "192.168.10.150");
    EXPECT_EQ(nic.value("leaseRenewals", 0), 1);
    const Json dns = Net()["dns"];
    EXPECT_EQ(dns["nameServers"], Json({"192.168.10.2"}));
    EXPECT_EQ(dns["searchDomains"], Json({"lab.example", "x.example"}));
    // A DHCP interface has no static gateway to set.
    EXPECT_FALSE(Logged("Setting default gateway"));
}

// Switching IPv6 ends with the host's restart: the notice waits for <Enter>
// once everything is written and saved, then the restart screen keeps the
// screen for good (here the keys run out, which ends the run).
TEST_F(ApplyTest, SwitchingIpv6RestartsTheHostLast) {
    root().editState([](Json& s) {
        s["network"]["ipv6Enabled"] = false;
        s["network"]["ipv6EnabledAfterReboot"] = false;
    });
    auto p = Seed();
    ASSERT_FALSE(p.ipv6Host);
    p.ipv6Pending = true;
    p.mode.SetUseIpv6RouterAdvertised(true);
    p.hostname = "tesk-host04";
    Json atNotice;
    onWait = [&] {
        if (atNotice.is_null()) atNotice = root().state();
    };
    EXPECT_THROW(Apply(p, {'x', Tesk::KeyEscape, Tesk::KeyEnter}), std::runtime_error);

    // Other keys and <Esc> do nothing; <Enter> leads to the restart screen.
    ASSERT_EQ(screens_.size(), 4u);
    EXPECT_NE(screens_[0].find("Enable IPv6: Restart Required"), std::string::npos);
    EXPECT_NE(screens_[0].find("This host must be restarted before IPv6 will be enabled."),
              std::string::npos);
    EXPECT_NE(screens_[3].find("Restart in progress..."), std::string::npos) << screens_[3];
    const Json& net = atNotice["network"];
    EXPECT_TRUE(net["ipv6EnabledAfterReboot"]);
    EXPECT_TRUE(net["zrkNics"][0]["config"]["ipv6Enabled"]);
    EXPECT_TRUE(net["zrkNics"][0]["config"]["routerAdvertised"]);
    EXPECT_EQ(net["dns"]["saved"]["hostname"], "tesk-host04");
    EXPECT_EQ(root().state()["power"]["lastCommand"], "reboot");
}

}  // namespace
}  // namespace TeskTest
