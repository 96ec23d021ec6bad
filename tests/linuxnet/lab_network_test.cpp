// The network screens on the lab's Linux host (run through scripts/lab.sh):
// a DHCP lease reaches the welcome screen without a key, a static address
// reaches the kernel and the networkd file, the network test passes and
// fails with the peer's end of the cable down, and the factory restore
// leaves the host on DHCP.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "tests/harness/console_session.h"
#include "tests/harness/keys.h"

namespace {

namespace Key = TeskTest::Key;
using TeskTest::ConsoleSession;
using TeskTest::SessionOptions;

std::string Env(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// What the lab gives the console: its root, backend, bus and logins.
SessionOptions LabSession() {
    SessionOptions options;
    options.cols = 100;
    options.rows = 30;
    for (const char* name :
         {"TESK_ROOT", "TESK_BACKEND", "DBUS_SYSTEM_BUS_ADDRESS", "TESK_LIBVIRT_URI", "LD_PRELOAD",
          "PAM_WRAPPER", "PAM_WRAPPER_SERVICE_DIR", "PAM_WRAPPER_DISABLE_DEEPBIND",
          "UID_WRAPPER_DISABLE_DEEPBIND"})
        if (const char* value = std::getenv(name)) options.env.emplace_back(name, value);
    return options;
}

// The command's standard output.
std::string Run(const std::string& command) {
    std::string out;
    if (FILE* pipe = ::popen(command.c_str(), "r")) {
        char buffer[4096];
        for (size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) out.append(buffer, n);
        ::pclose(pipe);
    }
    return out;
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string ManagementFile() {
    return ReadFile(Env("TESK_ROOT") + "/etc/systemd/network/60-tesk-br0.network");
}

bool KernelHas(ConsoleSession& console, const std::string& address) {
    return console.waitFor(
        [&] {
            return Run("ip -o addr show dev br0 2>/dev/null").find(" " + address + "/") !=
                   std::string::npos;
        },
        "br0 to have " + address, std::chrono::seconds(60));
}

// The host as installed: the management bridge over eth0 on DHCP.
void InstallNetwork() {
    const std::string to = Env("TESK_ROOT") + "/etc/systemd/network";
    for (const auto& file : std::filesystem::directory_iterator(TESK_LAB_INSTALLED_NETWORK))
        std::filesystem::copy_file(file.path(), to + "/" + file.path().filename().string(),
                                   std::filesystem::copy_options::overwrite_existing);
    std::system("networkctl reload");
}

// Waits for text and for the screen to settle: a dialog drops the keys typed
// before it took the focus.
bool Settled(ConsoleSession& console, std::string_view text,
             ConsoleSession::Timeout timeout = TeskTest::DefaultTimeout()) {
    return console.waitForText(text, timeout) && console.waitForQuiet();
}

// Waits until the caret stands on the field labelled label.
bool CaretOn(ConsoleSession& console, std::string_view label) {
    return console.waitFor(
               [&] {
                   const auto field = console.find(label);
                   return field && console.screen().cursorVisible() &&
                          console.screen().cursor().row == field->row;
               },
               "the caret on " + std::string(label)) &&
           console.waitForQuiet(std::chrono::milliseconds(200));
}

// The dialog fills in the name and drops keys typed before it is up: each key
// waits for the caret on its field.
bool LogIn(ConsoleSession& console) {
    if (!console.waitForText("<F2>")) return false;
    console.key(Key::F(2));
    if (!CaretOn(console, "Login Name:")) return false;
    console.key(Key::Down);
    if (!CaretOn(console, "Password:")) return false;
    console.type("tesk-demo");
    console.key(Key::Enter);
    return console.waitForText("System Customization");
}

// Moves the menu's selection (or the window's) down to the entry whose title
// the pane shows on the second row.
bool Select(ConsoleSession& console, const std::string& title) {
    console.waitForQuiet();
    for (int i = 0; i < 14; ++i) {
        if (console.row(1).find(title, 40) != std::string::npos) return console.waitForQuiet();
        const std::string before = console.row(1);
        console.key(Key::Down);
        if (!console.waitFor([&] { return console.row(1) != before; }, "the selection to move"))
            return false;
    }
    return false;
}

// Runs the network test with its proposed addresses; the screen's text at the end.
std::string RunNetworkTest(ConsoleSession& console) {
    if (!Select(console, "Test Management Network")) return {};
    console.key(Key::Enter);
    if (!Settled(console, "Resolve Hostname")) return {};
    console.key(Key::Enter);
    if (!Settled(console, "Done.", std::chrono::seconds(60))) return {};
    const std::string text = console.text();
    console.key(Key::Enter);
    console.waitForTextGone("Done.");
    return text;
}

class LabNetwork : public ::testing::Test {
protected:
    void SetUp() override {
        if (Env("TESK_BACKEND") != "linux" || Env("LAB_PEER_NETNS").empty())
            GTEST_SKIP() << "runs in the lab (scripts/lab.sh)";
    }
};

TEST_F(LabNetwork, LeaseShownWithoutAKeyThenAStaticAddressReachesKernelAndFile) {
    ConsoleSession console(LabSession());
    ASSERT_TRUE(console.waitForText("<F2>"));
    EXPECT_FALSE(console.find("192.168.77.10"));
    InstallNetwork();
    EXPECT_TRUE(console.waitForText("https://192.168.77.10/ (DHCP)", std::chrono::seconds(60)));

    ASSERT_TRUE(LogIn(console));
    ASSERT_TRUE(Select(console, "Configure Management Network"));
    console.key(Key::Enter);
    ASSERT_TRUE(Settled(console, "<Esc> Exit"));
    ASSERT_TRUE(Select(console, "IPv4 Configuration"));
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
    EXPECT_TRUE(console.waitFor(
        [] { return ManagementFile().find("Gateway=") != std::string::npos; },
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
    ASSERT_TRUE(Select(console, "Network Restore Options"));
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

    EXPECT_TRUE(KernelHas(console, "192.168.77.10"));
    file = ManagementFile();
    EXPECT_NE(file.find("DHCP=ipv4\n"), std::string::npos) << file;
    EXPECT_EQ(file.find("Address="), std::string::npos) << file;
}

}  // namespace
