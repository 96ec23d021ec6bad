// The console on the lab's Linux host (run through scripts/lab.sh): the
// welcome screen shows the lab host's product line, hardware and memory,
// without loading the libraries the backend opens at first use; the keyboard,
// logs, support and extensions entries of the menu do their job there.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "hostctl/exception.h"
#include "linuxhost/backend.h"
#include "tests/harness/console_session.h"
#include "tests/harness/lab_environment.h"
#include "tests/session/robustness_steps.h"

namespace {

using TeskTest::ConsoleSession;
using TeskTest::SessionOptions;

// What the lab gives the console: its root, backend, bus and logins.
SessionOptions LabSession() {
    SessionOptions options;
    TeskTest::PassLabEnvironment(options);
    return options;
}

void WriteInRoot(const std::string& hostPath, const std::string& text) {
    const std::string path = std::string(std::getenv("TESK_ROOT")) + hostPath;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path) << text;
}

TEST(LabWelcome, ShowsTheHostsProductLineHardwareAndMemory) {
    const char* backend = std::getenv("TESK_BACKEND");
    if (std::getenv("TESK_ROOT") == nullptr || backend == nullptr ||
        std::string(backend) != "linux")
        GTEST_SKIP() << "runs in the lab (scripts/lab.sh)";
    // The processors and memory of the lab root stand in for the kernel's.
    WriteInRoot("/proc/cpuinfo",
                "processor\t: 0\nphysical id\t: 0\nmodel name\t: Lab CPU 3000\n\n"
                "processor\t: 1\nphysical id\t: 1\nmodel name\t: Lab CPU 3000\n");
    WriteInRoot("/proc/meminfo", "MemTotal:       16777216 kB\n");
    WriteInRoot("/proc/sys/kernel/osrelease", "6.1.0-lab\n");
    WriteInRoot("/proc/sys/kernel/version", "#7 SMP PREEMPT_DYNAMIC\n");

    ConsoleSession console(LabSession());
    EXPECT_TRUE(console.waitForText("Debian GNU/Linux 12 (Zerkel 6.1.0-lab Build 7)"));
    EXPECT_TRUE(console.waitForText("Lab Systems LS-2000 Rack Server"));
    EXPECT_TRUE(console.waitForText("2 x Lab CPU 3000"));
    EXPECT_TRUE(console.waitForText("16 GiB Memory"));
    // The welcome screen's facts load none of the libraries opened at first use.
    std::ifstream maps("/proc/" + std::to_string(console.pid()) + "/maps");
    const std::string loaded(std::istreambuf_iterator<char>(maps), {});
    for (const char* library : {"/libsystemd.so", "/libvirt.so", "/libcrypto.so"})
        EXPECT_EQ(loaded.find(library), std::string::npos) << library << " loaded at start";
}

}  // namespace

namespace {

using namespace SessionTest;

constexpr int kCols = 100;

std::string ReadInRoot(const std::string& hostPath) {
    std::ifstream file(std::string(std::getenv("TESK_ROOT")) + hostPath);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

void WriteToolInRoot(const std::string& hostPath, const std::string& body) {
    WriteInRoot(hostPath, "#!/bin/sh\n" + body + "\n");
    ::chmod((std::string(std::getenv("TESK_ROOT")) + hostPath).c_str(), 0755);
}

// The right half of the screen (the selected entry's pane), without blanks
// and line ends, so that wrapped text reads whole.
std::string PaneWithoutBlanks(ConsoleSession& console) {
    std::string text;
    for (int r = 0; r < 30; ++r) {
        const std::string row = console.row(r);
        if (row.size() > kCols / 2) text += row.substr(kCols / 2);
    }
    std::erase(text, ' ');
    return text;
}

// Moves the selection down to entry, waiting for each move as long as the
// machine needs.
bool Choose(ConsoleSession& console, const std::string& entry) {
    for (int i = 0; i < 20 && Heading(console, kCols) != entry; ++i) {
        // A menu that became active again drops keys typed before it settled.
        console.waitForQuiet();
        const std::string before = Heading(console, kCols);
        console.key(Key::Down);
        console.waitFor([&] { return Heading(console, kCols) != before; }, "the selection moved");
    }
    return WaitSettled(console, entry) && Heading(console, kCols) == entry;
}

TEST(LabMenu, KeyboardLogsSupportAndExtensionsEntries) {
    const char* backend = std::getenv("TESK_BACKEND");
    if (std::getenv("TESK_ROOT") == nullptr || backend == nullptr ||
        std::string(backend) != "linux")
        GTEST_SKIP() << "runs in the lab (scripts/lab.sh)";
    try {
        LinuxHost::MakeLinuxBackend()->GetLockdownMode()->IsEnabled();
    } catch (const HostCtl::Lib::HostCtlException& e) {
        GTEST_SKIP() << "the login asks the host's lockdown mode: " << e.what();
    }
    const std::string root = std::getenv("TESK_ROOT");
    WriteInRoot("/var/run/brelt/show-tesk-login", "");  // console logins allowed
    WriteInRoot("/usr/share/X11/xkb/rules/base.lst",
                "! layout\n  us  English (US)\n  de  German\n\n! variant\n");
    WriteToolInRoot("/bin/setupcon", "echo \"$*\" >> " + root + "/setupcon-calls");
    // The pager keeps what it was shown.
    WriteToolInRoot("/bin/less", "for a; do f=$a; done; cat \"$f\" >> " + root + "/pager-shown");
    WriteInRoot("/var/log/auth.log", "sshd: session opened for root\n");
    WriteInRoot(
        "/etc/ssh/ssh_host_ed25519_key.pub",
        "ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIFHEYjVKZKXylBN0z999RepElXL3dNgxt9mAHLrstt7W\n");

    SessionOptions options = LabSession();
    options.cols = kCols;
    options.rows = 30;
    options.term = "xterm";  // the host's own console: the keyboard entry is offered
    options.env.emplace_back("ESCDELAY", "50");
    ConsoleSession console(options);
    ASSERT_TRUE(LogIn(console));

    ASSERT_TRUE(Choose(console, "Configure Keyboard")) << console.text();
    console.key(Key::Enter);
    ASSERT_TRUE(console.waitForText("German"));
    console.keys({Key::Down, " ", Key::Enter});
    ASSERT_TRUE(
        console.waitFor([&] { return !ReadInRoot("/setupcon-calls").empty(); }, "setupcon ran"));
    EXPECT_EQ(ReadInRoot("/setupcon-calls"), "-k\n");
    EXPECT_NE(ReadInRoot("/etc/default/keyboard").find("XKBLAYOUT=\"de\"\n"), std::string::npos);

    ASSERT_TRUE(Choose(console, "View System Logs")) << console.text();
    ASSERT_TRUE(console.waitForText("Logins (/var/log/auth.log)"));
    const std::string pane = console.text();
    const auto number = pane.rfind('<', pane.find("Logins (/var/log/auth.log)"));
    console.key(pane.substr(number + 1, 1));
    ASSERT_TRUE(console.waitFor([&] { return !ReadInRoot("/pager-shown").empty(); }, "pager ran"));
    EXPECT_EQ(ReadInRoot("/pager-shown"), "sshd: session opened for root\n");

    ASSERT_TRUE(Choose(console, "View Support Information")) << console.text();
    EXPECT_TRUE(console.waitForText("Machine ID: "));
    // The pane wraps the fingerprint.
    EXPECT_TRUE(console.waitFor(
        [&] {
            return PaneWithoutBlanks(console).find(
                       "ED25519SHA256:AsvDxcV86VufY89xLGKcS2yNsEcy3rcRSsvQr4uJYH8") !=
                   std::string::npos;
        },
        "the SSH host key's fingerprint"));

    ASSERT_TRUE(Choose(console, "Remove Custom Extensions")) << console.text();
    EXPECT_TRUE(console.waitForText("A Linux host has no custom extensions to"));
}

}  // namespace
