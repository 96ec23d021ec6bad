// The network screens on the lab's Linux host (run through scripts/lab.sh):
// a DHCP lease reaches the welcome screen without a key, a static address
// reaches the kernel and the networkd file, the network test passes and
// fails with the peer's end of the cable down, and the factory restore
// leaves the host on DHCP.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "tests/harness/keys.h"
#include "tests/linuxnet/lab_support.h"

namespace {

using namespace LabNet;
namespace Key = TeskTest::Key;

class LabNetwork : public ::testing::Test {
protected:
    void SetUp() override {
        if (!InLab()) GTEST_SKIP() << "runs in the lab (scripts/lab.sh)";
    }
};

TEST_F(LabNetwork, LeaseShownWithoutAKeyThenAStaticAddressReachesKernelAndFile) {
    ConsoleSession console(LabSession());
    ASSERT_TRUE(console.waitForText("<F2>"));
    EXPECT_FALSE(console.find("192.168.77.10"));
    InstallNetwork();
    EXPECT_TRUE(console.waitForText("https://192.168.77.10/ (DHCP)", std::chrono::seconds(60)));

    ASSERT_TRUE(LogIn(console));
    ASSERT_TRUE(LabSelect(console, "Configure Management Network"));
    console.key(Key::Enter);
    ASSERT_TRUE(Settled(console, "<Esc> Exit"));
    ASSERT_TRUE(LabSelect(console, "IPv4 Configuration"));
    console.key(Key::Enter);
    ASSERT_TRUE(Settled(console, "Set static IPv4 address"));
    console.keys({Key::Down, Key::Down, Key::Space, Key::Down, Key::End});
    for (int i = 0; i < 16; ++i) console.key(Key::Backspace);
    console.type("192.168.77.50");
    ASSERT_TRUE(console.waitForText("[ 192.168.77.50"));
    console.key(Key::Enter);
    ASSERT_TRUE(console.waitForTextGone("Set static IPv4 address") && console.waitForQuiet());
    console.key(Key::Esc);
    ASSERT_TRUE(Settled(console, "Configure Management Network: Confirm"));
    console.type("y");

    EXPECT_TRUE(KernelHas(console, "192.168.77.50"));
    // The gateway is written by a later step of the apply than the address.
    EXPECT_TRUE(
        console.waitFor([] { return ManagementFile().find("Gateway=") != std::string::npos; },
                        "the gateway in the management file", std::chrono::seconds(60)));
    const std::string file = ManagementFile();
    EXPECT_NE(file.find("Address=192.168.77.50/24\n"), std::string::npos) << file;
    EXPECT_NE(file.find("Gateway=192.168.77.1\n"), std::string::npos) << file;
    EXPECT_NE(file.find("DHCP=ipv6\n"), std::string::npos) << file;
}

TEST_F(LabNetwork, NetworkTestPassesAndFailsWithThePeersEndDown) {
    InstallNetwork();
    ConsoleSession console(LabSession());
    ASSERT_TRUE(KernelHas(console, "192.168.77.10"));
    ASSERT_TRUE(LogIn(console));
    std::string text = RunNetworkTest(console);
    EXPECT_NE(text.find("Resolving hostname tesk-lab"), std::string::npos) << text;
    EXPECT_EQ(text.find("Failed."), std::string::npos) << text;

    std::system(("nsenter --net=" + Env("LAB_PEER_NETNS") + " ip link set p0 down").c_str());
    text = RunNetworkTest(console);
    EXPECT_NE(text.find("Failed."), std::string::npos) << text;
    EXPECT_EQ(text.find("OK."), std::string::npos) << text;
}

TEST_F(LabNetwork, FactoryRestoreLeavesTheHostOnDhcp) {
    // A host with a static address the restore must undo.
    InstallNetwork();
    const std::string path = Env("TESK_ROOT") + "/etc/systemd/network/60-tesk-br0.network";
    std::string file = ManagementFile();
    file.replace(file.find("DHCP=yes"), 8, "DHCP=no\nAddress=192.168.77.60/24");
    std::ofstream(path) << file;
    std::system("networkctl reload");
    ConsoleSession console(LabSession());
    ASSERT_TRUE(KernelHas(console, "192.168.77.60"));

    ASSERT_TRUE(LogIn(console));
    ASSERT_TRUE(LabSelect(console, "Network Restore Options"));
    console.key(Key::Enter);
    ASSERT_TRUE(Settled(console, "Create Standard Switch"));
    // The migration's row is grey: no operations agent on this host.
    console.keys({Key::Down, Key::Down, Key::Enter});
    ASSERT_TRUE(Settled(console, "Are you sure you want to reset"));
    // The lab's machines run: they are stopped first (a short limit for the
    // one that ignores a shutdown).
    std::ofstream(Env("TESK_ROOT") + "/etc/tesk/linux-host.conf", std::ios::app)
        << "machines.shutdown_seconds=5\n";
    console.key(Key::F(11));
    ASSERT_TRUE(Settled(console, "Host has VMs running"));
    console.key(Key::Enter);
    ASSERT_TRUE(console.waitForText("Auto-configuring network. Done.", std::chrono::seconds(60)));
    // The change is kept (its files moved out of their trial place) before
    // the dialog offers OK.
    ASSERT_TRUE(Settled(console, "<Enter> OK"));

    EXPECT_TRUE(KernelHas(console, "192.168.77.10"));
    file = ManagementFile();
    EXPECT_NE(file.find("DHCP=ipv4\n"), std::string::npos) << file;
    EXPECT_EQ(file.find("Address="), std::string::npos) << file;
}

}  // namespace
