// The contract of distributed switches: QdsSwitch, host-local ports and a
// Zerkel NIC moved onto a port (ZrkNic::ConnectToQdsPort).
#include "tests/contract/contract.h"

namespace {

using namespace HostCtl::Network;
using namespace TeskContract;
using HostCtl::Backend;

class QdsContract : public OnDistributedSwitchHost {
protected:
    void SetUp() override {
        OnDistributedSwitchHost::SetUp();
        if (IsSkipped()) return;
        const ConnectionPoint point = Management(host())->GetPortConnection();
        ASSERT_EQ(point.GetType(), ConnectionType::QdsPort);
        name_ = point.GetSwitchName();
        port_ = point.GetPortId();
    }
    std::unique_ptr<QdsSwitch> Qds() const { return host().GetQdsSwitch(name_); }

    std::string name_;  // the management interface's switch
    std::string port_;  // and port
};

// The management interface is on a port of a switch of the host's own kind;
// host-local ports take the next number and keep their settings.
TEST_F(QdsContract, HostLocalPortsTakeTheNextNumberAndKeepTheirSettings) {
    EXPECT_TRUE(Qds()->IsOwnKind());
    EXPECT_TRUE(host().GetPortset(name_)->IsValidVirtualSwitch()) << "switch names are shared";
    const auto onQds = host().GetZerkelNicInfo()->GetZerkelNics(PortsetKind::Qds);
    ASSERT_EQ(onQds.size(), 1u);
    EXPECT_EQ(onQds[0]->GetName(), Management(host())->GetName());

    const auto uplinks = Qds()->GetUplinkMap();
    ASSERT_GE(uplinks.size(), 2u);
    QdsPortSettings settings;
    settings.vlanId = 40;
    settings.blocked = true;
    settings.activeUplinks = {std::next(uplinks.begin())->second};
    settings.standbyUplinks = {uplinks.begin()->second};
    settings.properties = {{"mtu", "9000"}};
    EXPECT_EQ(Qds()->AddHostLocalPort(settings), "hlp-0");
    EXPECT_EQ(Qds()->GetPortSettings("hlp-0"), settings);
    EXPECT_EQ(Qds()->AddHostLocalPort({}), "hlp-1");

    auto nic = Management(host());
    nic->ConnectToQdsPort(name_, "hlp-0");
    nic->Refresh();
    EXPECT_EQ(nic->GetPortConnection().GetPortId(), "hlp-0");
    EXPECT_EQ(nic->GetPortConnection().GetSwitchName(), name_);
}

TEST_F(QdsContract, RefusedPortChangesLeaveTheHostAndTheNumbersAlone) {
    QdsPortSettings strangeUplink;
    strangeUplink.activeUplinks = {"no-such-uplink"};
    QdsPortSettings vlan4095;
    vlan4095.vlanId = 4095;
    const std::string name = name_;
    const std::string port = port_;
    ExpectRefused({
        {"an uplink the switch lacks",
         [&](const Backend& b) { b.GetQdsSwitch(name)->AddHostLocalPort(strangeUplink); }},
        {"a VLAN of 4095",
         [&](const Backend& b) { b.GetQdsSwitch(name)->AddHostLocalPort(vlan4095); }},
        {"settings of a port the switch lacks",
         [&](const Backend& b) { b.GetQdsSwitch(name)->GetPortSettings("no-such-port"); }},
        {"a NIC onto a port the switch lacks",
         [&](const Backend& b) { Management(b)->ConnectToQdsPort(name, "no-such-port"); }},
        {"a NIC onto a switch the host lacks",
         [&](const Backend& b) { Management(b)->ConnectToQdsPort("no-such-switch", port); }},
        {"an uplink of the distributed switch on a standard one",
         [&](const Backend& b) {
             const auto standard = b.GetVirtualSwitchInfo()->GetVirtualSwitches(PortsetKind::All);
             standard.at(0)->AddUplink(b.GetQdsSwitch(name)->GetUplinkMap().begin()->first);
         }},
    });
    EXPECT_EQ(Qds()->AddHostLocalPort({}), "hlp-0") << "a refusal takes no number";
}

// The operations that change the host, made to fail.
TEST_F(QdsContract, FailuresLeaveTheHostAlone) {
    const std::string name = name_;
    const std::string port = port_;
    ExpectFailures({
        {"QdsSwitch.RemoveUplink",
         [=](const Backend& b) {
             b.GetQdsSwitch(name)->RemoveUplink(
                 b.GetQdsSwitch(name)->GetUplinkMap().begin()->first);
         }},
        {"QdsSwitch.AddHostLocalPort",
         [=](const Backend& b) { b.GetQdsSwitch(name)->AddHostLocalPort({}); }},
        {"ZrkNic.ConnectToQdsPort",
         [=](const Backend& b) { Management(b)->ConnectToQdsPort(name, port); }},
    });
}

}  // namespace
