// What the simulated host makes of going down and coming back: the factory
// reset keeps the machine's identity, custom extensions are listed and
// removed, and a boot after a power-off or a restart brings the host up the
// way its init would.
#include "sim/host.h"
#include "tests/simtools/tool_runner.h"

namespace TeskTest {
namespace {

using Json = Sim::Json;

class PowerHostTest : public HostRootTest {
protected:
    Json At(const std::string& pointer) { return Sim::Get(pointer).value_or(Json()); }
};

TEST_F(PowerHostTest, FactoryResetRestoresSettingsAndKeepsTheMachine) {
    Sim::Update([](Json& s) {
        s["network"]["dns"]["hostname"] = "renamed";
        s["network"]["pnics"][1]["mac"] = "02:00:00:00:00:42";
        s["advancedOptions"]["/UserVars/KovixShellTimeOut"]["value"] = 600;
        s["lockdown"]["enabled"] = true;
        s["vms"][0]["running"] = false;
        s["power"]["reboots"] = 3;
    });
    EXPECT_EQ(RunTool("/sbin/factoryConfig.py", {"--reset-only"}).status, 0);
    EXPECT_EQ(At("/network/dns/hostname"), "tesk-host01");
    EXPECT_EQ(At("/advancedOptions/~1UserVars~1KovixShellTimeOut/value"), 0);
    EXPECT_EQ(At("/lockdown/enabled"), false);
    // The machine, its machines and the records stay.
    EXPECT_EQ(At("/network/pnics/1/mac"), "02:00:00:00:00:42");
    EXPECT_EQ(At("/vms/0/running"), false);
    EXPECT_EQ(At("/power/reboots"), 3);
    EXPECT_EQ(At("/users/0/name"), "root");
    EXPECT_EQ(At("/customExtensions").size(), 1u);
    EXPECT_EQ(At("/factoryConfig/resets"), 1);

    // Without its factory image the reset fails and changes nothing.
    std::filesystem::remove(Path(std::string("/") + Sim::kFactoryStatePath));
    Sim::Update([](Json& s) { s["network"]["dns"]["hostname"] = "renamed"; });
    EXPECT_EQ(RunTool("/sbin/factoryConfig.py", {"--reset-only"}).status, 1);
    EXPECT_EQ(At("/network/dns/hostname"), "renamed");
    EXPECT_EQ(At("/factoryConfig/resets"), 1);
}

TEST_F(PowerHostTest, CustomExtensionsAreListedAndRemoved) {
    Sim::Update([](Json& s) { s["vibs"] = {{"plex-opsagent", {{"version", "3.1.0-2"}}}}; });
    EXPECT_EQ(RunTool("/bin/kovacli", {"software", "vib", "list", "--custom"}).out,
              "acme-ipmi-tools\n");
    EXPECT_EQ(RunTool("/bin/kovacli", {"software", "vib", "list"}).out,
              "plex-opsagent\nacme-ipmi-tools\n");
    EXPECT_EQ(RunTool("/sbin/factoryConfig.py", {"--remove-custom-extensions"}).status, 0);
    EXPECT_EQ(RunTool("/bin/kovacli", {"software", "vib", "list", "--custom"}).out, "");
    EXPECT_EQ(At("/vibs").size(), 1u);
    EXPECT_EQ(RunTool("/sbin/factoryConfig.py", {"--everything"}).status, 2);
}

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
