// Safe apply on the lab's Linux host, through the real console: a static
// address in the wrong subnet fails the gateway check and the end of the count
// puts the DHCP file and the lease back (the network test then passes), and a
// console killed during the count leaves the old network: at once when the
// host restarts (the change's files were on trial under /run), and after the
// console's next start.
// The count's end is the record's deadline, which the test moves instead of
// waiting out the count.
#include <signal.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "tests/harness/keys.h"
#include "tests/linuxnet/lab_support.h"

using namespace std::chrono_literals;

namespace {

namespace Key = TeskTest::Key;
using namespace LabNet;
using SessionTest::Retype;

// From the menu: 192.168.78.50/24 with gateway 192.168.78.1 (a subnet the
// lab's wire does not carry) applied with Y, up to the question after the
// failed gateway check.
bool ApplyWrongSubnet(ConsoleSession& console) {
    if (!LabSelect(console, "Configure Management Network")) return false;
    console.key(Key::Enter);
    if (!Settled(console, "<Esc> Exit") || !LabSelect(console, "IPv4 Configuration")) return false;
    console.key(Key::Enter);
    if (!Settled(console, "Set static IPv4 address")) return false;
    console.keys({Key::Down, Key::Down, Key::Space, Key::Down});
    Retype(console, "192.168.78.50");
    console.keys({Key::Down, Key::Down});
    Retype(console, "192.168.78.1");
    if (!console.waitForText("[ 192.168.78.1 ")) return false;
    console.key(Key::Enter);
    if (!console.waitForTextGone("Set static IPv4 address") || !console.waitForQuiet())
        return false;
    console.key(Key::Esc);
    if (!Settled(console, "Configure Management Network: Confirm")) return false;
    console.type("y");
    return console.waitForText("Management Network: Check Failed", 60s) &&
           Settled(console, "<R> Revert");
}

void EndTheCount() {
    const std::string record = Env("TESK_ROOT") + "/var/lib/tesk/change-record";
    std::system(("sed -i 's/^revertAt .*/revertAt 1/' " + record).c_str());
}

// The management bridge's file on trial under /run.
std::string TrialFile() {
    return ReadFile(Env("TESK_ROOT") + "/run/systemd/network/59-tesk-br0.network");
}

// What a restart of the host does to a trial: /run is empty again and
// networkd reads the files of /etc.
void RestartTheHostsNetwork() {
    const std::string root = Env("TESK_ROOT");
    Run("rm -f " + root + "/run/systemd/network/59-tesk-* " + root +
        "/run/tesk/network-trial && networkctl reload");
}

class LabSafeApply : public ::testing::Test {
protected:
    void SetUp() override {
        if (!InLab()) GTEST_SKIP() << "runs in the lab (scripts/lab.sh)";
        InstallNetwork();
        installed_ = ManagementFile();
    }
    std::string installed_;
};

TEST_F(LabSafeApply, AWrongSubnetComesBackWhenTheCountEndsAndTheTestThenPasses) {
    ConsoleSession console(LabSession());
    ASSERT_TRUE(KernelHas(console, "192.168.77.10"));
    ASSERT_TRUE(LogIn(console));
    ASSERT_TRUE(ApplyWrongSubnet(console)) << console.dump();
    EXPECT_TRUE(console.find("\"Default gateway 192.168.78.1 answers\" failed")) << console.dump();
    EXPECT_NE(TrialFile().find("Address=192.168.78.50/24\n"), std::string::npos);
    EXPECT_EQ(ManagementFile(), installed_);
    EXPECT_TRUE(KernelHas(console, "192.168.78.50"));

    EndTheCount();
    ASSERT_TRUE(console.waitForText("Checking Previous Management Network", 30s));
    ASSERT_TRUE(Settled(console, "Done.", 60s)) << console.dump();
    EXPECT_FALSE(console.find("Failed.")) << console.dump();
    EXPECT_EQ(ManagementFile(), installed_);
    EXPECT_EQ(TrialFile(), "");
    EXPECT_TRUE(KernelHas(console, "192.168.78.50", false));
    EXPECT_TRUE(KernelHas(console, "192.168.77.10"));
    console.key(Key::Enter);
    ASSERT_TRUE(Settled(console, "<Esc> Log Out"));

    const std::string text = RunNetworkTest(console);
    EXPECT_NE(text.find("OK."), std::string::npos) << text;
    EXPECT_EQ(text.find("Failed."), std::string::npos) << text;
}

TEST_F(LabSafeApply, AConsoleKilledDuringTheCountLeavesTheOldNetworkAfterTheNextStart) {
    {
        ConsoleSession console(LabSession());
        ASSERT_TRUE(KernelHas(console, "192.168.77.10"));
        ASSERT_TRUE(LogIn(console));
        ASSERT_TRUE(ApplyWrongSubnet(console)) << console.dump();
        ASSERT_TRUE(KernelHas(console, "192.168.78.50"));
        console.signal(SIGKILL);
        console.waitExit();
        // The host restarts: the old network is back before the console runs.
        RestartTheHostsNetwork();
        EXPECT_TRUE(KernelHas(console, "192.168.78.50", false));
        EXPECT_TRUE(KernelHas(console, "192.168.77.10"));
    }
    ConsoleSession next(LabSession());
    ASSERT_TRUE(next.waitForText("<F2>"));
    EXPECT_TRUE(KernelHas(next, "192.168.78.50", false));
    EXPECT_TRUE(KernelHas(next, "192.168.77.10"));
    EXPECT_EQ(ManagementFile(), installed_);
    EXPECT_FALSE(std::ifstream(Env("TESK_ROOT") + "/var/lib/tesk/change-record"));
}

}  // namespace
