// The simulated outside network: what the management interface reaches and
// what resolves, as configuration and cabling change.
#include <gtest/gtest.h>

#include <chrono>

#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "platform/waiting.h"
#include "simhost/outside_network.h"
#include "tests/harness/sim_root.h"
#include "tests/harness/sim_root_test.h"

namespace {

using TeskTest::Json;
using TeskTest::SimRoot;
namespace Outside = ZrkCtl::Network::Outside;

bool Reaches(const Json& state, const std::string& target) {
    return Outside::Reaches(state, target).reached;
}

Json& Nic(Json& s) {
    return s["network"]["zrkNics"][0];
}
Json& ManagementGroup(Json& s) {
    return s["network"]["standardSwitches"][0]["portGroups"][0];
}

TEST(OutsideNetwork, DefaultHostReachesItsGatewaysNameServersAndBeyond) {
    SimRoot root;
    const Json s = root.state();
    for (const char* target :
         {"192.168.10.1", "192.168.10.2", "192.168.10.3", "198.51.100.10", "2001:db8:10::1",
          "2001:db8:10::53", "2001:db8:100::10", "fe80::1%zrk0", "192.168.10.21"})
        EXPECT_TRUE(Reaches(s, target)) << target << ": " << Outside::Reaches(s, target).why;
    // Nobody has these addresses, on the subnet or beyond it.
    for (const char* target : {"192.168.10.99", "192.0.2.1", "2001:db8:10::99", "fe80::99"})
        EXPECT_FALSE(Reaches(s, target)) << target;
    EXPECT_TRUE(Outside::Resolves(s, "tesk-host01"));  // through the search domain
    EXPECT_TRUE(Outside::Resolves(s, "WWW.example.net."));
    EXPECT_FALSE(Outside::Resolves(s, "unknown.example.net"));
}

TEST(OutsideNetwork, WrongVlanSubnetGatewayOrCablingCutsTheHostOff) {
    SimRoot root;
    const Json base = root.state();
    struct Case {
        const char* what;
        std::function<void(Json&)> change;
        bool gateway, nameServer, remote, resolves;
    };
    const Case cases[] = {
        {"VLAN the segment does not carry", [](Json& s) { ManagementGroup(s)["vlanId"] = 99; },
         false, false, false, false},
        {"VLAN of another subnet", [](Json& s) { ManagementGroup(s)["vlanId"] = 30; }, false, false,
         false, false},
        {"address outside the VLAN's subnet",
         [](Json& s) { Nic(s)["config"]["ipv4Address"] = "192.168.30.21"; }, false, false, false,
         true /* still over IPv6 */},
        {"gateway nobody has",
         [](Json& s) { s["network"]["routing"]["ipv4Gateway"] = "192.168.10.254"; }, false, true,
         false, true},
        {"no link on the active uplinks",
         [](Json& s) {
             for (int i : {0, 1}) s["network"]["pnics"][i]["linkUp"] = false;
         },
         false, false, false, false},
        {"only an uncabled adapter active",
         [](Json& s) {
             s["network"]["standardSwitches"][0]["teamingPolicy"]["activeUplinks"] = {"pnic3"};
         },
         false, false, false, false},
        {"interface down", [](Json& s) { Nic(s)["up"] = false; }, false, false, false, false},
        {"right VLAN, subnet and gateway of VLAN 30",
         [](Json& s) {
             ManagementGroup(s)["vlanId"] = 30;
             Nic(s)["config"]["ipv4Address"] = "192.168.30.21";
             s["network"]["routing"]["ipv4Gateway"] = "192.168.30.1";
             s["network"]["dns"]["nameServers"] = {"192.168.30.2"};
         },
         true, true, true, true},
    };
    for (const Case& c : cases) {
        Json s = base;
        c.change(s);
        const std::string gateway = s["network"]["routing"]["ipv4Gateway"];
        EXPECT_EQ(Reaches(s, gateway), c.gateway) << c.what;
        const std::string server = s["network"]["dns"]["nameServers"][0];
        EXPECT_EQ(Reaches(s, server), c.nameServer) << c.what;
        EXPECT_EQ(Reaches(s, "198.51.100.10"), c.remote) << c.what;
        EXPECT_EQ(Outside::Resolves(s, "tesk-host01"), c.resolves) << c.what;
    }
}

TEST(OutsideNetwork, ProfilesMatchTheirConfiguration) {
    // The distributed switch host's management port is misconfigured on
    // purpose (blocked, VLAN 30, one uplink), so that its repairs show in the
    // test; set right, the same port reaches the gateway untagged.
    SimRoot qds("qds");
    EXPECT_EQ(Outside::Reaches(qds.state(), "192.168.10.1").why,
              "the distributed port of zrk0 is blocked");
    Json repaired = qds.state();
    Json& port = repaired["network"]["distributedSwitches"][0]["portSettings"]["10"];
    port["blocked"] = false;
    EXPECT_FALSE(Reaches(repaired, "192.168.10.1")) << "VLAN 30 is not the management network's";
    port["vlanId"] = 0;
    EXPECT_TRUE(Reaches(repaired, "192.168.10.1"))
        << Outside::Reaches(repaired, "192.168.10.1").why;
    port["vlanId"] = 10;  // the lab switch's native VLAN: tagged or not, the same network
    EXPECT_TRUE(Reaches(repaired, "192.168.10.1"))
        << Outside::Reaches(repaired, "192.168.10.1").why;
    port["activeUplinks"] = Json::array();
    EXPECT_FALSE(Reaches(repaired, "192.168.10.1")) << "a port without active uplinks";
    SimRoot dhcp("dhcp");  // no DHCP server answers: 0.0.0.0 reaches nothing
    EXPECT_FALSE(Reaches(dhcp.state(), "192.168.10.1"));
    SimRoot nonic("nonic");
    EXPECT_EQ(Outside::Reaches(nonic.state(), "192.168.10.1").why, "no management interface");
}

TEST(OutsideNetwork, ReachableListOverridesTheModel) {
    SimRoot root;
    Json s = root.state();
    s["reachable"] = {"192.0.2.1", "FE80::5"};
    EXPECT_TRUE(Reaches(s, "192.0.2.1"));
    EXPECT_TRUE(Reaches(s, "fe80::5%zrk0"));
    EXPECT_FALSE(Reaches(s, "192.168.10.1"));
}

}  // namespace

namespace {

using TeskTest::Json;

class Resolver : public TeskTest::SimRootTest {
protected:
    bool Resolve(const std::string& name) {
        return HostCtl::TheBackend().GetResolver("defaultNetStack")->Resolve(name);
    }
};

TEST_F(Resolver, AnswersFromTheNameServersNeverFromTheHostsFile) {
    EXPECT_TRUE(Resolve("tesk-host01"));
    EXPECT_FALSE(Resolve("localhost"));  // only the hosts file knows it
    sim().editState([](Json& s) {
        s["network"]["dns"]["nameServers"] = {"192.168.10.99"};
        s["network"]["dns"]["ipv6NameServers"] = Json::array();
    });
    EXPECT_FALSE(Resolve("tesk-host01"));  // nobody serves DNS there
}

TEST_F(Resolver, FaultsFailOrSlowTheCallAndAQuitCutsTheWaitShort) {
    sim().setFault("resolver.resolve", {{"exception", "DNS down"}});
    EXPECT_THROW(Resolve("tesk-host01"), HostCtl::Lib::HostCtlException);

    sim().setFault("resolver.resolve", {{"delayMs", 300}});
    auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(Resolve("tesk-host01"));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(300));

    sim().setFault("resolver.resolve", {{"delayMs", 60000}});
    Tesk::Platform::NoteQuitRequest();
    start = std::chrono::steady_clock::now();
    EXPECT_THROW(Resolve("tesk-host01"), HostCtl::Lib::HostCtlException);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    Tesk::Platform::ResetQuitRequestForTesting();
}

}  // namespace
