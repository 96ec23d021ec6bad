// The simulated host's shell keeps shell lines inside the host root.
#include <fstream>

#include "sim/tools/shell.h"
#include "tests/simtools/tool_runner.h"

namespace TeskTest {
namespace {

class ShellTest : public HostRootTest {};

TEST_F(ShellTest, MapsPathsThatBelongToTheRoot) {
    const std::string r = root_;
    using Sim::Tools::MapHostPaths;
    EXPECT_EQ(MapHostPaths("/sbin/factoryConfig.py --reset-only > /dev/null 2>&1"),
              r + "/sbin/factoryConfig.py --reset-only > /dev/null 2>&1");
    EXPECT_EQ(MapHostPaths("/etc/init.d/plex-opsagent status"),
              r + "/etc/init.d/plex-opsagent status");
    // Folders the root has, even for files not there yet.
    EXPECT_EQ(MapHostPaths("echo x >/tmp/new;cat /etc/hosts"),
              "echo x >" + r + "/tmp/new;cat " + r + "/etc/hosts");
    // The machine's own programs, words inside other words and quoted data stay.
    EXPECT_EQ(MapHostPaths("/usr/bin/awk '/Version/{ print }' a/bin/sh"),
              "/usr/bin/awk '/Version/{ print }' a/bin/sh");
    EXPECT_EQ(MapHostPaths("x=\"/bin/sh\" `/sbin/reboot`"),
              "x=\"" + r + "/bin/sh\" `" + r + "/sbin/reboot`");
    EXPECT_EQ(MapHostPaths("echo \\/bin/sh"), "echo \\/bin/sh");
}

TEST_F(ShellTest, LinesReachTheSimulatedToolsOnly) {
    EXPECT_EQ(Tesk::RunShellCommand("/sbin/factoryConfig.py --reset-only > /dev/null 2>&1"), 0);
    EXPECT_EQ(Sim::Get("/factoryConfig/resets"), Sim::Json(1));
    EXPECT_EQ(Tesk::RunShellCommand("/sbin/factoryConfig.py --bogus > /dev/null 2>&1"), 2);

    EXPECT_EQ(Tesk::RunShellCommand("reboot"), 0);
    EXPECT_EQ(Tesk::RunShellCommand("poweroff"), 0);
    EXPECT_EQ(Sim::Get("/power/reboots"), Sim::Json(1));
    EXPECT_EQ(Sim::Get("/power/poweroffs"), Sim::Json(1));

    EXPECT_EQ(Tesk::RunShellCommand("/sbin/services.sh restart"), 0);
    EXPECT_EQ(Sim::Get("/hostAgent/starts"), Sim::Json(1));

    // Files named in a line are the root's.
    std::ofstream(Path("/etc/hosts"), std::ios::app) << "10.9.8.7 marker\n";
    auto hosts = RunTool("/bin/sh", {"-c", "grep marker /etc/hosts"});
    EXPECT_EQ(hosts.status, 0);
    EXPECT_EQ(hosts.out, "10.9.8.7 marker\n");
}

}  // namespace
}  // namespace TeskTest
