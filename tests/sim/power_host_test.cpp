// What the simulated host makes of going down and coming back: the factory
// reset keeps the machine's identity, and a boot after a power-off or a
// restart brings the host up the way its init would.
#include "sim/host.h"
#include "tests/simtools/tool_runner.h"

namespace TeskTest {
namespace {

using Json = Sim::Json;

class PowerHostTest : public HostRootTest {
protected:
    Json At(const std::string& pointer) { return Sim::Get(pointer).value_or(Json()); }
};

TEST_F(PowerHostTest, BootBringsAHostThatWentDownBackUp) {
    EXPECT_EQ(Sim::ReadPowerState(root_), Sim::PowerState::On);
    EXPECT_FALSE(Sim::BootHost(root_));
    EXPECT_EQ(At("/power/boots"), Json());

    Sim::Update([](Json& s) {
        s["services"]["SSH"] = {{"running", false}, {"enabled", true}};
        s["services"]["KovaShell"] = {{"running", true}, {"enabled", false}};
        s["hostAgent"]["running"] = false;
        s["vms"] = {{{"name", "a"}, {"running", false}, {"autoStart", true}},
                    {{"name", "b"}, {"running", true}}};
        s["network"]["ipv6EnabledAfterReboot"] = false;
    });
    EXPECT_EQ(RunTool("/sbin/reboot", {}).status, 0);
    EXPECT_EQ(Sim::ReadPowerState(root_), Sim::PowerState::Restarting);
    EXPECT_TRUE(Sim::BootHost(root_));
    EXPECT_EQ(Sim::ReadPowerState(root_), Sim::PowerState::On);
    EXPECT_EQ(At("/power/boots"), 1);
    EXPECT_EQ(At("/services/SSH/running"), true);
    EXPECT_EQ(At("/services/KovaShell/running"), false);
    EXPECT_EQ(At("/hostAgent/running"), true);
    EXPECT_EQ(At("/vms/0/running"), true);
    EXPECT_EQ(At("/vms/1/running"), false);
    EXPECT_EQ(At("/network/ipv6Enabled"), false);

    EXPECT_EQ(RunTool("/sbin/poweroff", {}).status, 0);
    EXPECT_EQ(Sim::ReadPowerState(root_), Sim::PowerState::Off);
    EXPECT_TRUE(Sim::BootHost(root_));
    EXPECT_EQ(At("/power/boots"), 2);
}

}  // namespace
}  // namespace TeskTest
