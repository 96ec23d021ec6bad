// The network test follows what is applied: a wrong VLAN applied to the
// management port group makes the gateway ping and the resolution fail, the
// right one applied again makes them pass. The ping runs as the test runs it,
// through the host's echo test (the simulated host's own ping tool).
#include "tests/network/apply_fixture.h"

namespace TeskTest {
namespace {

class TestAfterApply : public ApplyTest {
protected:
    bool Ping(const std::string& address) {
        return HostCtl::TheBackend().GetPinger()->Ping(address);
    }
    bool Resolve(const std::string& name) {
        return HostCtl::TheBackend().GetResolver("defaultNetStack")->Resolve(name);
    }
    void ApplyVlan(std::uint16_t vlan) {
        auto p = Seed();
        p.vlanId = vlan;
        Apply(p);
        ASSERT_EQ(PortGroup("Management Network")["vlanId"], vlan);
    }
};

TEST_F(TestAfterApply, WrongVlanFailsTheGatewayPingAndTheRightOnePassesAgain) {
    EXPECT_TRUE(Ping("192.168.10.1"));
    EXPECT_TRUE(Resolve("tesk-host01"));

    ApplyVlan(30);
    EXPECT_FALSE(Ping("192.168.10.1"));
    EXPECT_FALSE(Ping("192.168.10.2"));
    EXPECT_FALSE(Resolve("tesk-host01"));

    ApplyVlan(0);
    EXPECT_TRUE(Ping("192.168.10.1"));
    EXPECT_TRUE(Ping("2001:db8:10::1"));
    EXPECT_TRUE(Resolve("tesk-host01"));
}

}  // namespace
}  // namespace TeskTest
