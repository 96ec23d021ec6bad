// The network commands of the simulated kovacli and plexcfg-vswitch, run as
// the console runs them: through the links in the host root.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <initializer_list>

#include "tests/hostctl/fixture.h"

namespace {

using TeskTest::Json;

class ToolsTest : public TeskTest::HostRootTest {
protected:
    // Runs the root's tool with the arguments (the tool sees no TESK_ROOT: it
    // finds its root from the path it was started by). Returns the exit status.
    int Run(const std::string& hostPath, std::initializer_list<std::string> args) {
        std::string line = "env -u TESK_ROOT '" + root().path(hostPath) + "'";
        for (const auto& a : args) line += " '" + a + "'";
        line += " >/dev/null 2>&1";
        int status = std::system(line.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    int Kovacli(std::initializer_list<std::string> args) { return Run("/bin/kovacli", args); }

    Json Switch(const std::string& name) {
        Json state = root().state();
        for (const auto& s : state["network"]["standardSwitches"])
            if (s["name"] == name) return s;
        return Json();
    }
};

TEST_F(ToolsTest, KovacliBuildsAStandardSwitch) {
    EXPECT_EQ(Kovacli({"network", "vswitch", "standard", "add", "-v", "zSwitch7"}), 0);
    EXPECT_EQ(Switch("zSwitch7")["numPorts"], 128);
    EXPECT_NE(Kovacli({"network", "vswitch", "standard", "add", "-v", "zSwitch7"}), 0);
    EXPECT_NE(Kovacli({"network", "vswitch", "standard", "add"}), 0);

    EXPECT_EQ(Kovacli({"network", "vswitch", "standard", "uplink", "add", "-u", "pnic3", "-v",
                       "zSwitch7"}),
              0);
    EXPECT_EQ(Switch("zSwitch7")["uplinks"], Json::array({"pnic3"}));
    // An uplink another switch uses is refused; so is a NIC the host lacks.
    EXPECT_NE(Kovacli({"network", "vswitch", "standard", "uplink", "add", "-u", "pnic0", "-v",
                       "zSwitch7"}),
              0);
    EXPECT_NE(Kovacli({"network", "vswitch", "standard", "uplink", "add", "-u", "pnic9", "-v",
                       "zSwitch7"}),
              0);

    EXPECT_EQ(Kovacli({"network", "vswitch", "standard", "portgroup", "add", "-p", "Backup", "-v",
                       "zSwitch7"}),
              0);
    EXPECT_EQ(Switch("zSwitch7")["portGroups"][0]["name"], "Backup");
    EXPECT_NE(Kovacli({"network", "vswitch", "standard", "portgroup", "add", "-p", "VM Network",
                       "-v", "zSwitch7"}),
              0);

    EXPECT_EQ(Run("/sbin/kovacli", {"network", "vswitch", "standard", "uplink", "remove", "-u",
                                    "pnic3", "-v", "zSwitch7"}),
              0);
    EXPECT_EQ(Switch("zSwitch7")["uplinks"], Json::array());
    EXPECT_NE(Kovacli({"network", "vswitch", "standard", "uplink", "remove", "-u", "pnic3", "-v",
                       "zSwitch7"}),
              0);
    EXPECT_EQ(Kovacli({"network", "bogus"}), 2);
}

TEST_F(ToolsTest, KovacliFaultsAndOtherCommands) {
    root().setFault("kovacli.uplink.add", {{"exitStatus", 4}});
    EXPECT_EQ(Kovacli({"network", "vswitch", "standard", "uplink", "add", "-u", "pnic3", "-v",
                       "zSwitch0"}),
              4);
    EXPECT_EQ(Switch("zSwitch0")["uplinks"].size(), 2u);

    // Everything outside "network" is the rest of kovacli's.
    EXPECT_EQ(Kovacli({"--formatter=keyvalue", "system", "settings", "advanced", "set", "-o",
                       "/UserVars/TeskTimeOut", "-i", "300"}),
              0);
    EXPECT_EQ(root().stateValue("/advancedOptions/~1UserVars~1TeskTimeOut/value"), Json(300));
}

TEST_F(ToolsTest, PlexcfgMovesAZerkelNicToAPortGroup) {
    const std::string tool = "/usr/lib64/brelt/plex-opsagent/bin/plexcfg-vswitch";
    EXPECT_EQ(Run(tool, {"-m", "-p", "VM Network", "-I", "zrk1"}), 0);
    EXPECT_EQ(root().stateValue("/network/zrkNics/1/connection/portGroup"), Json("VM Network"));
    EXPECT_NE(Run(tool, {"-m", "-p", "Nowhere", "-I", "zrk1"}), 0);
    EXPECT_NE(Run(tool, {"-m", "-p", "VM Network", "-I", "zrk9"}), 0);
    EXPECT_EQ(Run(tool, {"-p", "VM Network"}), 2);
}

}  // namespace
