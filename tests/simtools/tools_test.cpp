// The simulated host tools fail, hang or die when the state tells them to. What
// they change in the state is checked where the console relies on it: by the
// screen tests of each entry and the host-control contract.
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

TEST_F(ToolsTest, FaultsMakeAnyToolFailHangOrDie) {
    SetFault("backup.sh", {{"exitStatus", 4}, {"output", "partial\n"}, {"error", "disk full\n"}});
    auto failed = RunTool("/sbin/backup.sh", {"0"});
    EXPECT_EQ(failed.status, 4);
    EXPECT_EQ(failed.out, "partial\n");
    EXPECT_EQ(failed.err, "disk full\n");
    EXPECT_EQ(At("/configBackup"), Json());
    // A fault that is no object is a broken state: the tool fails and does nothing.
    SetFault("backup.sh", "disk full");
    EXPECT_EQ(RunTool("/sbin/backup.sh", {"0"}).status, 1);
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
