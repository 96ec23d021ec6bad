// The simulated host's distributed-switch ports: their kind, settings,
// host-local ports and Zerkel NICs moved onto them; every refusal leaves the
// state as it was.
#include <gtest/gtest.h>

#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "tests/hostctl/fixture.h"

using HostCtl::Lib::HostCtlException;
using TeskTest::Json;

namespace {

class QdsPorts : public TeskTest::HostRootTest {
protected:
    void SetUp() override { UseProfile("qds"); }
    std::unique_ptr<HostCtl::Network::QdsSwitch> Qds() {
        return HostCtl::TheBackend().GetQdsSwitch("qDS-Prod");
    }
    // Runs the change, which must be refused, and checks the state is unchanged.
    template <typename Change>
    void ExpectRefused(Change&& change) {
        const Json before = root().state();
        EXPECT_THROW(change(), HostCtlException);
        EXPECT_EQ(root().state(), before);
    }
};

}  // namespace

TEST_F(QdsPorts, HostLocalPortsTakeTheNextFreeNumber) {
    HostCtl::Network::QdsPortSettings settings;
    settings.vlanId = 40;
    settings.activeUplinks = {"uplink2"};
    EXPECT_EQ(Qds()->AddHostLocalPort(settings), "hlp-0");
    root().editState([](Json& s) {
        auto& ports = s["network"]["distributedSwitches"][0]["ports"];
        ports.push_back("hlp-1");
    });
    EXPECT_EQ(Qds()->AddHostLocalPort(settings), "hlp-2");
    EXPECT_EQ(Qds()->GetPortSettings("hlp-2"), settings);
    // A port without settings of its own has the defaults: every uplink active.
    EXPECT_EQ(Qds()->GetPortSettings("hlp-1").activeUplinks,
              (std::vector<std::string>{"uplink1", "uplink2"}));
}

TEST_F(QdsPorts, RefusalsLeaveTheStateWhole) {
    HostCtl::Network::QdsPortSettings unknownUplink;
    unknownUplink.activeUplinks = {"uplink7"};
    ExpectRefused([&] { Qds()->AddHostLocalPort(unknownUplink); });

    HostCtl::Network::QdsPortSettings badVlan;
    badVlan.vlanId = 4095;
    ExpectRefused([&] { Qds()->AddHostLocalPort(badVlan); });

    root().setFault("qds.addHostLocalPort", {{"exception", "busy"}});
    ExpectRefused([&] { Qds()->AddHostLocalPort({}); });
    root().setFault("qds.addHostLocalPort", nullptr);

    root().editState([](Json& s) { s["network"]["distributedSwitches"][0]["numPorts"] = 3; });
    ExpectRefused([&] { Qds()->AddHostLocalPort({}); });

    root().editState([](Json& s) {
        s["network"]["distributedSwitches"][0]["kind"] = "foreign";
        s["network"]["distributedSwitches"][0]["numPorts"] = 512;
    });
    EXPECT_FALSE(Qds()->IsOwnKind());
    ExpectRefused([&] { Qds()->AddHostLocalPort({}); });

    auto nic = HostCtl::TheBackend().GetZrkNic("zrk0");
    ExpectRefused([&] { nic->ConnectToQdsPort("qDS-Prod", "hlp-0"); });
    ExpectRefused([&] { nic->ConnectToQdsPort("qDS-Gone", "10"); });
    nic->ConnectToQdsPort("qDS-Prod", "12");
    EXPECT_EQ(root().stateValue("/network/zrkNics/0/connection/port"), Json("12"));
    EXPECT_TRUE(nic->IsStale());
}
