// The console on the lab's Linux host (run through scripts/lab.sh): shutting
// down and restarting stop the machines before logind is asked, the
// troubleshooting switches and the agents' restart reach systemd, and what
// the host does not offer is greyed with its reason.
#include <filesystem>
#include <fstream>

#include "tests/admin/admin_support.h"
#include "tests/harness/lab_environment.h"

using namespace AdminTest;

using namespace TeskTest;

namespace {

// What the lab gives the console: its root, backend, bus and logins.
SessionOptions LabConsole() {
    SessionOptions options = LocalConsole();
    TeskTest::PassLabEnvironment(options);
    return options;
}

bool Has(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

// The way in without the welcome screen's full frame (the lab's host
// facts come from other parts of the backend): key, then a login as root.
bool LogInWith(ConsoleSession& console, int key) {
    if (!WaitSettled(console, "<F12>")) return false;
    console.key(FKey(key));
    if (!WaitSettled(console, "Login Name:")) return false;
    EnterCredentials(console, "root", kPassword);
    return true;
}

class LabScreens : public ::testing::Test {
protected:
    void SetUp() override {
        if (Env("LAB_DIR").empty()) GTEST_SKIP() << "needs the lab (scripts/lab.sh)";
        // The marker that lets the console take logins.
        const std::string marker = Env("TESK_ROOT") + "/var/run/brelt/show-tesk-login";
        std::filesystem::create_directories(std::filesystem::path(marker).parent_path());
        std::ofstream{marker};
        // Units the lab's systemd stand-in knows.
        std::ofstream(Env("TESK_ROOT") + "/etc/tesk/linux-host.conf", std::ios::app)
            << "units.agents=cron.service libvirtd.service\nmachines.shutdown_seconds=5\n";
    }
};

TEST_F(LabScreens, ShutDownAndRestartStopTheMachinesBeforeLogind) {
    const struct {
        int key;
        const char* call;
    } cases[] = {{2, "PowerOff False"}, {11, "Reboot False"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.call);
        ConsoleSession console(LabConsole());
        ASSERT_TRUE(LogInWith(console, 12));
        ASSERT_TRUE(WaitSettled(console, "Forcefully terminate"));
        console.key(FKey(c.key));
        ASSERT_TRUE(console.waitFor([&] { return Has(ReadFile(Env("LAB_LOGIND_CALLS")), c.call); },
                                    c.call));
        const std::string log = LabLog();
        const auto stopped = log.rfind("Virtual machine db01 shut down");
        const auto asked =
            log.rfind(std::string("login1.Manager.") + (c.key == 2 ? "PowerOff" : "Reboot"));
        ASSERT_NE(stopped, std::string::npos) << log;
        EXPECT_LT(stopped, asked) << log;
    }
}

TEST_F(LabScreens, TroubleshootingSwitchesAndAgentsReachSystemd) {
    ConsoleSession console(LabConsole());
    ASSERT_TRUE(LogInWith(console, 2));
    ASSERT_TRUE(WaitSettled(console, "<Esc> Log Out"));
    // Lockdown mode: greyed, its reason in the pane.
    ASSERT_TRUE(GoToEntry(console, "Configure Lockdown Mode")) << console.dump();
    EXPECT_TRUE(WaitSettled(console, "has no lockdown mode"));
    ASSERT_TRUE(GoToEntry(console, "Troubleshooting Options"));
    console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(console, "Troubleshooting Mode Options"));
    // The second row: SSH.
    console.key(Key::Down);
    ASSERT_TRUE(WaitSettled(console, "Enable SSH"));
    console.key(Key::Enter);
    ASSERT_TRUE(console.waitFor(
        [] { return Has(ReadFile(Env("LAB_SYSTEMD_CALLS")), "StartUnit \"ssh.service\""); },
        "ssh.service started"));
    ASSERT_TRUE(WaitSettled(console, "Disable SSH"));

    ASSERT_TRUE(GoToEntry(console, "Restart Management Agents"));
    console.key(Key::Enter);
    ASSERT_TRUE(WaitSettled(console, "no way to take a live core"));
    // The check item takes no key.
    console.type(" ");
    EXPECT_TRUE(console.waitForQuiet());
    EXPECT_FALSE(console.find("[X]"));
    console.key(FKey(11));
    ASSERT_TRUE(console.waitFor(
        [] {
            const std::string calls = ReadFile(Env("LAB_SYSTEMD_CALLS"));
            return Has(calls, "StartUnit \"libvirtd.service\"");
        },
        "the agents restarted"));
}

}  // namespace
