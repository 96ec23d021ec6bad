// The console on the lab's Linux host (run through scripts/lab.sh): the
// welcome screen shows the lab host's product line, hardware and memory,
// without loading the libraries the backend opens at first use; the keyboard,
// logs, support and extensions entries of the menu do their job there.
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "hostctl/exception.h"
#include "linuxhost/backend.h"
#include "tests/harness/lab_environment.h"
#include "tests/session/session_support.h"

namespace {

using namespace SessionTest;
using TeskTest::Env;

void WriteInRoot(const std::string& hostPath, const std::string& text, bool tool = false) {
    const std::string path = Env("TESK_ROOT") + hostPath;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path) << (tool ? "#!/bin/sh\n" + text + "\n" : text);
    if (tool) ::chmod(path.c_str(), 0755);
}

TEST(LabWelcome, ShowsTheHostsProductLineHardwareAndMemory) {
    if (!TeskTest::InLinuxLab()) GTEST_SKIP() << "runs in the lab (scripts/lab.sh)";
    // The processors and memory of the lab root stand in for the kernel's.
    WriteInRoot("/proc/cpuinfo",
                "processor\t: 0\nphysical id\t: 0\nmodel name\t: Lab CPU 3000\n\n"
                "processor\t: 1\nphysical id\t: 1\nmodel name\t: Lab CPU 3000\n");
    WriteInRoot("/proc/meminfo", "MemTotal:       16777216 kB\n");
    WriteInRoot("/proc/sys/kernel/osrelease", "6.1.0-lab\n");
    WriteInRoot("/proc/sys/kernel/version", "#7 SMP PREEMPT_DYNAMIC\n");

    SessionOptions options;
    TeskTest::PassLabEnvironment(options);
    ConsoleSession console(options);
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

std::string ReadInRoot(const std::string& hostPath) {
    return TeskTest::ReadFile(Env("TESK_ROOT") + hostPath);
}

TEST(LabMenu, KeyboardLogsSupportAndExtensionsEntries) {
    if (!TeskTest::InLinuxLab()) GTEST_SKIP() << "runs in the lab (scripts/lab.sh)";
    try {
        LinuxHost::MakeLinuxBackend()->GetLockdownMode()->IsEnabled();
    } catch (const HostCtl::Lib::HostCtlException& e) {
        GTEST_SKIP() << "the login asks the host's lockdown mode: " << e.what();
    }
    const std::string root = Env("TESK_ROOT");
    WriteInRoot("/var/run/brelt/show-tesk-login", "");  // console logins allowed
    WriteInRoot("/usr/share/X11/xkb/rules/base.lst",
                "! layout\n  us  English (US)\n  de  German\n\n! variant\n");
    WriteInRoot("/bin/setupcon", "echo \"$*\" >> " + root + "/setupcon-calls", true);
    // The pager keeps what it was shown.
    WriteInRoot("/bin/less", "for a; do f=$a; done; cat \"$f\" >> " + root + "/pager-shown", true);
    WriteInRoot("/var/log/auth.log", "sshd: session opened for root\n");
    WriteInRoot(
        "/etc/ssh/ssh_host_ed25519_key.pub",
        "ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIFHEYjVKZKXylBN0z999RepElXL3dNgxt9mAHLrstt7W\n");

    SessionOptions options = LocalConsole();  // the keyboard entry is offered there
    TeskTest::PassLabEnvironment(options);
    ConsoleSession console(options);
    ASSERT_TRUE(LogIn(console));

    ASSERT_TRUE(TeskTest::LabSelect(console, "Configure Keyboard")) << console.text();
    console.key(Key::Enter);
    ASSERT_TRUE(console.waitForText("German"));
    console.keys({Key::Down, " ", Key::Enter});
    ASSERT_TRUE(
        console.waitFor([&] { return !ReadInRoot("/setupcon-calls").empty(); }, "setupcon ran"));
    EXPECT_EQ(ReadInRoot("/setupcon-calls"), "-k\n");
    EXPECT_NE(ReadInRoot("/etc/default/keyboard").find("XKBLAYOUT=\"de\"\n"), std::string::npos);

    ASSERT_TRUE(TeskTest::LabSelect(console, "View System Logs")) << console.text();
    ASSERT_TRUE(console.waitForText("Logins (/var/log/auth.log)"));
    const std::string pane = console.text();
    const auto number = pane.rfind('<', pane.find("Logins (/var/log/auth.log)"));
    console.key(pane.substr(number + 1, 1));
    ASSERT_TRUE(console.waitFor([&] { return !ReadInRoot("/pager-shown").empty(); }, "pager ran"));
    EXPECT_EQ(ReadInRoot("/pager-shown"), "sshd: session opened for root\n");

    ASSERT_TRUE(TeskTest::LabSelect(console, "View Support Information")) << console.text();
    EXPECT_TRUE(console.waitForText("Machine ID: "));
    // The pane wraps the fingerprint.
    EXPECT_TRUE(console.waitFor(
        [&] {
            return PaneWithoutBlanks(console).find(
                       "ED25519SHA256:AsvDxcV86VufY89xLGKcS2yNsEcy3rcRSsvQr4uJYH8") !=
                   std::string::npos;
        },
        "the SSH host key's fingerprint"));

    ASSERT_TRUE(TeskTest::LabSelect(console, "Remove Custom Extensions")) << console.text();
    EXPECT_TRUE(console.waitForText("A Linux host has no custom extensions to"));
}

}  // namespace
