// The simulated host tools change the state as the console expects, and fail,
// hang or die when the state tells them to.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>

#include "tests/simtools/tool_runner.h"

namespace TeskTest {
namespace {

using Json = Sim::Json;

class ToolsTest : public HostRootTest {
protected:
    Json At(const std::string& pointer) { return Sim::Get(pointer).value_or(Json()); }
};

TEST_F(ToolsTest, RuxCmdLockdownAndQueries) {
    auto query = [](const char* what) { return RunTool("/bin/rux-cmd", {"-U", "tesk", what}).out; };
    EXPECT_EQ(query("ruxsvc/auth/lockdown_is_enabled"), "false\n");
    EXPECT_EQ(query("ruxsvc/auth/lockdown_is_possible"), "true\n");

    EXPECT_EQ(RunTool("/bin/rux-cmd", {"-U", "tesk", "ruxsvc/auth/lockdown_mode_enter"}).status, 0);
    EXPECT_EQ(query("ruxsvc/auth/lockdown_is_enabled"), "true\n");
    auto again = RunTool("/bin/rux-cmd", {"-U", "tesk", "ruxsvc/auth/lockdown_mode_enter"});
    EXPECT_EQ(again.status, 1);
    EXPECT_NE(again.err.find("already enabled"), std::string::npos) << again.err;
    EXPECT_EQ(RunTool("/bin/rux-cmd", {"-U", "tesk", "ruxsvc/auth/lockdown_mode_exit"}).status, 0);
    EXPECT_EQ(At("/lockdown/enabled"), false);

    Sim::Update([](Json& s) { s["lockdown"]["possible"] = false; });
    EXPECT_EQ(RunTool("/bin/rux-cmd", {"-U", "tesk", "ruxsvc/auth/lockdown_mode_enter"}).status, 1);
    EXPECT_EQ(At("/lockdown/enabled"), false);
}

TEST_F(ToolsTest, RuxCmdUsersAgentAndServices) {
    Sim::Update([](Json& s) { s["hostAgent"]["allowedUsers"] = {"tesk"}; });
    auto denied = RunTool("/bin/rux-cmd", {"-U", "root", "internalsvc/refresh"});
    EXPECT_EQ(denied.status, 255);
    EXPECT_NE(denied.err.find("root"), std::string::npos);
    EXPECT_EQ(At("/hostAgent/refreshes"), Json());
    EXPECT_EQ(RunTool("/bin/rux-cmd", {"-U", "tesk", "internalsvc/refresh"}).status, 0);
    EXPECT_EQ(At("/hostAgent/refreshes"), 1);

    for (const char* command : {"hostsvc/start_kova_shell", "hostsvc/enable_kova_shell",
                                "hostsvc/start_ssh", "hostsvc/enable_ssh", "hostsvc/stop_ssh"})
        EXPECT_EQ(RunTool("/bin/rux-cmd", {"-U", "tesk", command}).status, 0) << command;
    EXPECT_EQ(At("/services/KovaShell"), Json({{"running", true}, {"enabled", true}}));
    EXPECT_EQ(At("/services/SSH"), Json({{"running", false}, {"enabled", true}}));
    // The local shell's own script sees what the agent started.
    EXPECT_EQ(RunTool("/bin/sh", {"/etc/init.d/KovaShell", "status"}).status, 0);
    EXPECT_EQ(RunTool("/bin/sh", {"/etc/init.d/SSH", "status"}).status, 3);

    EXPECT_EQ(RunTool("/bin/rux-cmd", {"-U", "tesk", "hostsvc/no_such_thing"}).status, 1);
    Sim::Update([](Json& s) { s["hostAgent"]["running"] = false; });
    EXPECT_EQ(RunTool("/bin/rux-cmd", {"-U", "tesk", "internalsvc/refresh"}).status, 1);
}

TEST_F(ToolsTest, VirtualMachinesStopAndPowerOff) {
    Sim::Update([](Json& s) {
        s["vms"] = Json::array({{{"name", "web"}, {"running", true}, {"autoStart", true}},
                                {{"name", "db"}, {"running", true}},
                                {{"name", "old"}, {"running", false}}});
    });
    EXPECT_EQ(RunTool("/bin/rux-cmd", {"-U", "root", "hostsvc/autostartmanager/autostop"}).status,
              0);
    EXPECT_EQ(At("/vms/0/running"), false);
    EXPECT_EQ(At("/vms/1/running"), true);

    auto terminate = RunTool("/sbin/powerOffVms", {"--terminate"});
    EXPECT_EQ(terminate.status, 0);
    EXPECT_EQ(terminate.out, "Terminating db\n");
    EXPECT_EQ(At("/vms/1/running"), false);
    EXPECT_EQ(At("/power/lastVmPowerOff"), "terminate");
    EXPECT_EQ(RunTool("/bin/powerOffVms", {}).status, 0);
    EXPECT_EQ(At("/power/lastVmPowerOff"), "graceful");
    EXPECT_EQ(At("/power/vmPowerOffs"), 2);
    EXPECT_EQ(RunTool("/bin/powerOffVms", {"--force"}).status, 2);
}

TEST_F(ToolsTest, AdvancedOptionsAndPackages) {
    const char* option = "/UserVars/KovixShellTimeOut";
    EXPECT_EQ(RunTool("/sbin/kovacfg-advcfg", {"-q", "-g", option}).out, "0\n");
    EXPECT_EQ(RunTool("/sbin/kovacli-local",
                      {"system", "settings", "advanced", "set", "-o", option, "-i", "900"})
                  .status,
              0);
    EXPECT_EQ(RunTool("/sbin/kovacfg-advcfg", {"-q", "-g", option}).out, "900\n");
    EXPECT_EQ(At("/advancedOptions/~1UserVars~1KovixShellTimeOut"),
              Json({{"type", "integer"}, {"value", 900}}));
    // The full tool hands the same command to the same code.
    EXPECT_EQ(RunTool("/sbin/kovacli",
                      {"system", "settings", "advanced", "set", "-o", option, "-i", "60"})
                  .status,
              0);
    EXPECT_EQ(At("/advancedOptions/~1UserVars~1KovixShellTimeOut/value"), 60);

    EXPECT_EQ(RunTool("/sbin/kovacli",
                      {"system", "settings", "advanced", "set", "-o", "/UserVars/Nope", "-i", "1"})
                  .status,
              1);
    EXPECT_EQ(RunTool("/sbin/kovacli",
                      {"system", "settings", "advanced", "set", "-o", option, "-i", "ten"})
                  .status,
              1);
    EXPECT_EQ(RunTool("/sbin/kovacfg-advcfg", {"-q", "-g", "/UserVars/Nope"}).status, 1);

    EXPECT_EQ(RunTool("/bin/kovacli", {"software", "vib", "get", "-n", "plex-opsagent"}).status, 1);
    Sim::Update([](Json& s) { s["vibs"]["plex-opsagent"] = {{"version", "3.1.0-2"}}; });
    auto vib = RunTool("/bin/kovacli",
                       {"--formatter=keyvalue", "software", "vib", "get", "-n", "plex-opsagent"});
    EXPECT_EQ(vib.status, 0);
    EXPECT_NE(vib.out.find("Version.string=3.1.0-2\n"), std::string::npos) << vib.out;
}

TEST_F(ToolsTest, ServiceScripts) {
    EXPECT_EQ(RunTool("/sbin/services.sh", {"restart"}).status, 0);
    EXPECT_EQ(RunTool("/sbin/services.sh", {"stop"}).status, 0);
    EXPECT_EQ(At("/hostAgent/running"), false);
    EXPECT_EQ(RunTool("/sbin/services.sh", {"status"}).status, 3);
    EXPECT_EQ(RunTool("/sbin/services.sh", {"start"}).status, 0);
    EXPECT_EQ(At("/hostAgent/stops"), 2);
    EXPECT_EQ(At("/hostAgent/starts"), 2);
    EXPECT_EQ(RunTool("/sbin/services.sh", {"reload"}).status, 1);

    EXPECT_EQ(RunTool("/bin/sh", {"/etc/init.d/SSH", "start"}).status, 0);
    EXPECT_EQ(RunTool("/bin/sh", {"/etc/init.d/SSH", "restart"}).status, 0);
    EXPECT_EQ(At("/services/SSH/restarts"), 1);
    EXPECT_EQ(At("/services/SSH/running"), true);

    EXPECT_EQ(RunTool("/bin/sh", {"/etc/init.d/plex-opsagent", "status"}).status, 127);
    Sim::Update([](Json& s) { s["vibs"]["plex-opsagent"] = {{"version", "3.1.0-2"}}; });
    EXPECT_EQ(RunTool("/bin/sh", {"/etc/init.d/plex-opsagent", "status"}).status, 0);
}

// (That they end the running console, and only it: tests/session/poweroff_test.cpp.)
TEST_F(ToolsTest, PowerCommandsRecordWhatTheyDid) {
    EXPECT_EQ(Tesk::RunShellCommand("reboot"), 0);
    EXPECT_EQ(At("/power/state"), "rebooting");
    EXPECT_EQ(At("/power/lastCommand"), "reboot");
    EXPECT_EQ(Tesk::RunShellCommand("poweroff"), 0);
    EXPECT_EQ(At("/power/state"), "poweredOff");
    EXPECT_EQ(Tesk::RunShellCommand("reboot -f"), 0);
    EXPECT_EQ(At("/power/lastCommand"), "reboot -f");
    EXPECT_EQ(At("/power/reboots"), 2);
    EXPECT_EQ(At("/power/poweroffs"), 1);
}

TEST_F(ToolsTest, MaintenanceTools) {
    EXPECT_EQ(RunTool("/sbin/backup.sh", {"0"}).status, 0);
    EXPECT_EQ(At("/configBackup"), Json({{"runs", 1}, {"lastArgument", "0"}}));

    EXPECT_EQ(RunTool("/sbin/zrkbacktrace",
                      {"-w", "-n", "hagentd", "-o", "hagentd-restart%", "-d", "/var/log/"})
                  .status,
              0);
    std::string file = At("/backtraces/0/file").get<std::string>();
    EXPECT_TRUE(file.starts_with("/var/log/hagentd-restart")) << file;
    EXPECT_TRUE(std::filesystem::exists(Path(file)));
    Sim::Update([](Json& s) { s["hostAgent"]["running"] = false; });
    EXPECT_EQ(RunTool("/sbin/zrkbacktrace", {"-w", "-n", "hagentd", "-o", "x%", "-d", "/var/log/"})
                  .status,
              1);

    // Without a list the outside network answers (its gateway, not an unknown
    // address); with one, only the listed addresses.
    EXPECT_EQ(RunTool("/bin/zrkping", {"-c", "3", "192.168.10.1"}).status, 0);
    EXPECT_EQ(RunTool("/bin/zrkping", {"-c", "3", "192.0.2.1"}).status, 1);
    Sim::Update([](Json& s) { s["reachable"] = {"10.0.0.1", "FE80::1"}; });
    auto ok = RunTool("/bin/zrkping", {"-c", "3", "10.0.0.1"});
    EXPECT_EQ(ok.status, 0);
    EXPECT_NE(ok.out.find("64 bytes from 10.0.0.1: icmp_seq=0"), std::string::npos) << ok.out;
    EXPECT_EQ(RunTool("/bin/zrkping", {"-c", "3", "fe80::1%zrk0"}).status, 0);
    EXPECT_EQ(RunTool("/bin/zrkping", {"-c", "3", "10.0.0.2"}).status, 1);

    std::ofstream(Path("/etc/host.crt")) << "certificate\n";
    Sim::Update([](Json& s) { s["certificate"]["sha1"] = "AA:BB"; });
    auto thumb = RunTool("/bin/openssl",
                         {"x509", "-in", "/etc/host.crt", "-noout", "-fingerprint", "-sha1"});
    EXPECT_EQ(thumb.status, 0);
    EXPECT_EQ(thumb.out, "SHA1 Fingerprint=AA:BB\n");
    EXPECT_EQ(
        RunTool("/bin/openssl", {"x509", "-in", "/etc/none.crt", "-noout", "-fingerprint"}).status,
        1);
}

TEST_F(ToolsTest, FaultsMakeAnyToolFailHangOrDie) {
    SetFault("backup.sh", {{"exitStatus", 4}, {"output", "partial\n"}, {"error", "disk full\n"}});
    auto failed = RunTool("/sbin/backup.sh", {"0"});
    EXPECT_EQ(failed.status, 4);
    EXPECT_EQ(failed.out, "partial\n");
    EXPECT_EQ(failed.err, "disk full\n");
    EXPECT_EQ(At("/configBackup"), Json());

    SetFault("rux-cmd", {{"hang", true}, {"output", "tr"}});
    auto start = std::chrono::steady_clock::now();
    auto hung = RunTool("/bin/rux-cmd", {"-U", "tesk", "ruxsvc/auth/lockdown_is_enabled"}, 1);
    EXPECT_EQ(hung.status, -1);
    EXPECT_EQ(hung.out, "tr");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    SetFault("rux-cmd", nullptr);

    // One command of a tool alone.
    SetFault("rux-cmd:hostsvc/start_ssh", {{"exitStatus", 1}});
    EXPECT_EQ(RunTool("/bin/rux-cmd", {"-U", "tesk", "hostsvc/start_ssh"}).status, 1);
    EXPECT_EQ(RunTool("/bin/rux-cmd", {"-U", "tesk", "hostsvc/enable_ssh"}).status, 0);
    SetFault("SSH:status", {{"exitStatus", 0}});
    EXPECT_EQ(RunTool("/bin/sh", {"/etc/init.d/SSH", "status"}).status, 0);

    // A shell that dies: the runner's -1.
    SetFault("sh", {{"signal", SIGKILL}});
    EXPECT_EQ(Tesk::RunShellCommand("poweroff"), -1);
    EXPECT_EQ(At("/power"), Json());
    SetFault("sh", nullptr);
    SetFault("poweroff", {{"exitStatus", 1}});
    EXPECT_EQ(Tesk::RunShellCommand("poweroff"), 1);
}

}  // namespace
}  // namespace TeskTest
