// The management-tool wrappers, the power-off sequence and the agent service
// operations.
#include <string>

#include "host/ops_agent_service.h"
#include "host/runner.h"
#include "tests/host/host_root.h"

namespace TeskTest {
namespace {

using RuxCmdTest = HostRootTest;

TEST_F(RuxCmdTest, RetriesAsServiceAccountOnlyOn255) {
    // Refuses every user but the service account.
    WriteRecorder("/bin/rux-cmd", "$([ \"$2\" = tesk ] && echo 0 || echo 255)");
    const char* argv[] = {"rux-cmd", "-U", "root", "hostsvc/start_ssh", nullptr};
    EXPECT_EQ(Tesk::RuxCmdRun("/bin/rux-cmd", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0),
              0);
    EXPECT_EQ(Calls(), "-U root hostsvc/start_ssh\n-U tesk hostsvc/start_ssh\n");
    EXPECT_TRUE(
        Logged("Unable to execute command rux-cmd hostsvc/start_ssh using user root. Using "
               "user tesk"));
    EXPECT_STREQ(argv[2], "root");

    for (const char* status : {"0", "1", "254"}) {
        std::filesystem::remove(Path("/tmp/calls"));
        WriteRecorder("/bin/rux-cmd", status);
        EXPECT_EQ(
            Tesk::RuxCmdRun("/bin/rux-cmd", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0),
            std::stoi(status));
        EXPECT_EQ(Calls(), "-U root hostsvc/start_ssh\n") << "exit status " << status;
    }
}

TEST_F(RuxCmdTest, GetIsTrueOnlyForOutputBeginningWithTrue) {
    struct Case {
        const char* output;
        int status;
        bool expected;
    };
    const Case cases[] = {
        {"true", 0, true},     {"true\n", 0, true}, {"truely more text", 0, true},
        {" true", 0, false},   {"TRUE", 0, false},  {"", 0, false},
        {"false\n", 0, false}, {"tru", 0, false},   {"true\n", 1, true},
    };
    for (const auto& c : cases) {
        WriteScript("/bin/rux-cmd", std::string("printf '%s' '") + c.output + "'; exit " +
                                        std::to_string(c.status));
        EXPECT_EQ(Tesk::RuxCmdGet("ruxsvc/auth/lockdown_is_enabled"), c.expected)
            << "output \"" << c.output << "\"";
    }
    EXPECT_TRUE(Logged("rux-cmd invocation: get ruxsvc/auth/lockdown_is_enabled"));
    EXPECT_TRUE(Logged("rux-cmd invocation failure: "));

    // Asked as the service account.
    WriteRecorder("/bin/rux-cmd", "0");
    Tesk::RuxCmdGet("ruxsvc/auth/lockdown_is_possible");
    EXPECT_EQ(Calls(), "-U tesk ruxsvc/auth/lockdown_is_possible\n");
}

TEST_F(RuxCmdTest, PowerOffVmsGracefulOrTerminating) {
    WriteRecorder("/bin/rux-cmd");
    WriteRecorder("/bin/powerOffVms");
    Tesk::PowerOffVms("root", true);
    Tesk::PowerOffVms("root", false);
    EXPECT_EQ(Calls(),
              "-U root hostsvc/autostartmanager/autostop\n"
              "\n"
              "-U root hostsvc/autostartmanager/autostop\n"
              "--terminate\n");
}

TEST_F(RuxCmdTest, PlexOpsAgentService) {
    // Not installed: the service script is missing.
    EXPECT_FALSE(Tesk::IsPlexOpsAgentPresent());
    EXPECT_TRUE(Logged("Running: /etc/init.d/plex-opsagent status"));
    EXPECT_TRUE(Logged("plex-opsagent is not present on the system."));
    EXPECT_FALSE(Tesk::PlexOpsAgentV3Present());

    bool stopped = true;
    Tesk::StopPlexOpsAgent(stopped);
    EXPECT_FALSE(stopped);
    EXPECT_TRUE(Logged("Failed to stop plex-opsagent."));
    Tesk::StartPlexOpsAgent(stopped);
    EXPECT_TRUE(Logged("Skipping plex-opsagent start."));
    EXPECT_FALSE(Logged("Starting plex-opsagent."));

    Sim::Update([](Sim::Json& s) { s["vibs"]["plex-opsagent"] = {{"version", "3.2.0-1.12"}}; });
    EXPECT_TRUE(Tesk::PlexOpsAgentV3Present());
    EXPECT_TRUE(Logged("plex-opsagent is present on the system."));
    EXPECT_TRUE(Logged("plex-opsagent version >= 3 detected"));
    Tesk::StopPlexOpsAgent(stopped);
    EXPECT_TRUE(stopped);
    EXPECT_EQ(Sim::Get("/services/plex-opsagent/running"), Sim::Json(false));
    Tesk::StartPlexOpsAgent(stopped);
    EXPECT_TRUE(Logged("plex-opsagent has been successfully started."));
    EXPECT_EQ(Sim::Get("/services/plex-opsagent/running"), Sim::Json(true));

    Sim::Update([](Sim::Json& s) { s["vibs"]["plex-opsagent"]["version"] = "2.9.1-1"; });
    EXPECT_TRUE(Tesk::IsPlexOpsAgentPresent());
    EXPECT_FALSE(Tesk::IsPlexOpsAgentV3());
}

TEST_F(RuxCmdTest, PlexCfgVswitchMigrateVector) {
    WriteRecorder("/usr/lib64/brelt/plex-opsagent/bin/plexcfg-vswitch", "0");
    EXPECT_TRUE(Tesk::PlexCfgVswitchMigrate("hlp-1", "zrk0"));
    EXPECT_EQ(Calls(), "-m -p hlp-1 -I zrk0\n");
}

}  // namespace
}  // namespace TeskTest
