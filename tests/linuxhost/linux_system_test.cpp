// The Linux backend's system side on fixture host roots: the host's identity,
// support information, options, keyboard layout, configuration and logs.
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

#include "hostctl/exception.h"
#include "linuxhost/adv.h"
#include "linuxhost/configuration.h"
#include "linuxhost/hardware.h"
#include "linuxhost/host_files.h"
#include "linuxhost/logs.h"
#include "linuxhost/options.h"
#include "linuxhost/smartcard.h"
#include "linuxhost/support_info.h"
#include "linuxhost/system_info.h"
#include "linuxhost/system_version.h"
#include "platform/host_platform.h"
#include "platform/host_root_platform.h"
#include "tests/support/fixture_root.h"

namespace {

namespace fs = std::filesystem;
using HostCtl::Lib::HostCtlException;

class LinuxSystem : public TeskTest::FixtureRootTest {
protected:
    void SetUp() override {
        FixtureRootTest::SetUp();
        fs::create_directories(root_ + "/var/log");  // the host's log lines
        Tesk::Platform::InstallHostPlatform(std::make_unique<Tesk::Platform::HostRootPlatform>());
    }
    void TearDown() override {
        Tesk::Platform::InstallHostPlatform(nullptr);
        FixtureRootTest::TearDown();
    }
    bool Logged(const std::string& text) const {
        return Read("/var/log/syslog.log").find(text) != std::string::npos;
    }
};

TEST_F(LinuxSystem, IdentityFromOsReleaseDmiCpuinfoAndMeminfo) {
    Write("/etc/os-release",
          "PRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\n"
          "NAME=\"Debian GNU/Linux\"\nVERSION_ID=\"12\"\n");
    Write("/proc/sys/kernel/osrelease", "6.1.0-18-amd64\n");
    Write("/proc/sys/kernel/version", "#1 SMP PREEMPT_DYNAMIC Debian 6.1.76-1 (2024-02-01)\n");
    Write("/sys/class/dmi/id/sys_vendor", "Lab Systems Inc.  \n");
    Write("/sys/class/dmi/id/product_name", "LS-200\n");
    Write("/proc/meminfo", "MemFree: 10 kB\nMemTotal:       16384000 kB\n");
    const ZSI_SystemVersion v = LinuxHost::ReadSystemVersion();
    EXPECT_STREQ(v.productName, "Debian GNU/Linux");
    EXPECT_STREQ(v.productVersion, "12");
    EXPECT_STREQ(v.kernelVersion, "6.1.0-18-amd64");
    EXPECT_STREQ(v.buildNumber, "1");
    EXPECT_EQ(LinuxHost::HardwareInfoImpl().GetVendorName(), "Lab Systems Inc.");
    EXPECT_EQ(LinuxHost::HardwareInfoImpl().GetProductName(), "LS-200");
    LinuxHost::MemoryInfoImpl memory;
    EXPECT_EQ(memory.GetTotalPages() * memory.GetPageSize(), 16384000ull * 1024);

    // A host without DMI, os-release or cpuinfo: what it has, never an empty line.
    fs::remove_all(root_ + "/sys");
    fs::remove(root_ + "/etc/os-release");
    EXPECT_EQ(LinuxHost::HardwareInfoImpl().GetProductName(), LinuxHost::kUnidentifiedMachine);
    Write("/proc/device-tree/model", std::string("Board 4 Model B\0", 16));
    EXPECT_EQ(LinuxHost::HardwareInfoImpl().GetProductName(), "Board 4 Model B");
    EXPECT_STREQ(LinuxHost::ReadSystemVersion().productName, "Linux");
    Write("/proc/cpuinfo", "");
    EXPECT_THROW(LinuxHost::CpuInfoImpl().GetNumCpuPackages(), HostCtlException);
}

TEST(LinuxCpuInfo, PackagesAndModelAcrossArchitectures) {
    struct Case {
        const char* name;
        const char* cpuinfo;
        int packages;
        const char* model;
    } cases[] = {
        {"two x86 packages",
         "processor\t: 0\nphysical id\t: 0\nmodel name\t: Xeon A\n\n"
         "processor\t: 1\nphysical id\t: 1\nmodel name\t: Xeon A\n\n"
         "processor\t: 2\nphysical id\t: 1\nmodel name\t: Xeon A\n",
         2, "Xeon A"},
        {"arm without package ids",
         "processor\t: 0\nBogoMIPS\t: 108\n\nprocessor\t: 1\n\nModel\t\t: Board 4\n", 1, "Board 4"},
        {"no processor", "MemTotal: 1\n", 0, ""},
    };
    for (const auto& c : cases) {
        const auto summary = LinuxHost::SummariseCpuInfo(c.cpuinfo);
        EXPECT_EQ(summary.packages, c.packages) << c.name;
        EXPECT_EQ(summary.model, c.model) << c.name;
    }
}

TEST(LinuxShellFiles, AssignmentsAreReadAndRewrittenKeepingOtherLines) {
    const auto values = LinuxHost::ParseShellAssignments(
        "# comment\nA=plain\nB=\"two words\" # trailing\nC='it''s'\nD=\"q\\\"d\"\nnot a line\n");
    EXPECT_EQ(values.at("A"), "plain");
    EXPECT_EQ(values.at("B"), "two words");
    EXPECT_EQ(values.at("C"), "its");
    EXPECT_EQ(values.at("D"), "q\"d");
    EXPECT_EQ(values.size(), 4u);

    const std::string file = "# keep me\nXKBMODEL=\"pc105\"\nXKBLAYOUT=\"us\"\nXKBLAYOUT=\"fr\"\n";
    EXPECT_EQ(LinuxHost::SetShellAssignment(file, "XKBLAYOUT", "de"),
              "# keep me\nXKBMODEL=\"pc105\"\nXKBLAYOUT=\"de\"\n");
    EXPECT_EQ(LinuxHost::SetShellAssignment("A=1", "B", "$x"), "A=1\nB=\"\\$x\"\n");
}

TEST_F(LinuxSystem, SupportTextNamesMachineKeysAndCertificate) {
    Write("/etc/machine-id", "0123456789abcdef0123456789abcdef\n");
    Write("/etc/ssh/ssh_host_ed25519_key.pub",
          "ssh-ed25519 AAAAC3NzaC1lZDI1NTE5AAAAIFHEYjVKZKXylBN0z999RepElXL3dNgxt9mAHLrstt7W "
          "root@lab\n");
    Write("/etc/ssh/ssh_host_rsa_key.pub", "ssh-rsa !!!not-base64 root@lab\n");
    Write("/etc/pki/libvirt/servercert.pem",
          "-----BEGIN CERTIFICATE-----\n"
          "MIIBejCCASGgAwIBAgIUMEuQbxtycvNibBWjCoaQgFKiAmYwCgYIKoZIzj0EAwIw\n"
          "EjEQMA4GA1UEAwwHbGFiaG9zdDAgFw0yNjExMjQwODI4MTZaGA8yMTI2MTAzMTA4\n"
          "MjgxNlowEjEQMA4GA1UEAwwHbGFiaG9zdDBZMBMGByqGSM49AgEGCCqGSM49AwEH\n"
          "A0IABAdszSx/DzaGU6Dj00KtpsV+KmZqUIimcf/YSZUqHl6pkCdouRFCcBN8rAmr\n"
          "J1+FqpDLe/yr5T91j2XknYRwNqOjUzBRMB0GA1UdDgQWBBR/jdIvTwTTG0u8cCNU\n"
          "gk7qM1L3/zAfBgNVHSMEGDAWgBR/jdIvTwTTG0u8cCNUgk7qM1L3/zAPBgNVHRMB\n"
          "Af8EBTADAQH/MAoGCCqGSM49BAMCA0cAMEQCIEOhrx5P+TZ+lPZeIZCcxe8Ad6BS\n"
          "PgKOly1x0Nphrl0sAiAlpfbPT0EqU4ZPQHUGcy7At6MQwd9eslOA/VV4H2/MKQ==\n"
          "-----END CERTIFICATE-----\n");
    const std::string text = LinuxHost::SupportInformationImpl().GetSupportText();
    EXPECT_NE(text.find("Machine ID: 0123456789abcdef0123456789abcdef\n"), std::string::npos);
    // As ssh-keygen -l and openssl x509 -fingerprint -sha256 print them.
    EXPECT_NE(text.find("  ED25519 SHA256:AsvDxcV86VufY89xLGKcS2yNsEcy3rcRSsvQr4uJYH8\n"),
              std::string::npos)
        << text;
    EXPECT_EQ(text.find("RSA"), std::string::npos) << "a broken key is left out";
    EXPECT_NE(text.find("SHA-256 thumbprint: 9F:0C:A6:33:27:4E:B2:40:6B:2C:C8:35:64:13:FC:6C:"
                        "3B:2F:E0:29:10:A0:57:C8:51:36:64:65:32:55:8E:3D"),
              std::string::npos)
        << text;

    fs::remove_all(root_ + "/etc");
    EXPECT_EQ(LinuxHost::SupportInformationImpl().GetSupportText(), "");
}

TEST_F(LinuxSystem, OptionsFallBackOnBadValuesAndRefuseToWriteThem) {
    LinuxHost::AdvancedOptionImpl options;
    const std::string timeout = "/UserVars/TeskTimeOut";
    EXPECT_EQ(options.GetOption(timeout)->intValue, 600);
    EXPECT_FALSE(options.GetOption("/UserVars/Unknown"));

    options.SetIntOption(timeout, 900);
    EXPECT_EQ(options.GetOption(timeout)->intValue, 900);
    EXPECT_NE(Read(LinuxHost::Options::kOptionsFile).find("console.idle-timeout=900\n"),
              std::string::npos);
    for (std::int64_t refused : {-5LL, 90000LL})
        EXPECT_THROW(options.SetIntOption(timeout, refused), HostCtlException) << refused;
    EXPECT_THROW(options.SetIntOption("/UserVars/Unknown", 1), HostCtlException);
    EXPECT_EQ(options.GetOption(timeout)->intValue, 900);

    for (const char* bad : {"ten", "-1", "999999", ""}) {
        Write(LinuxHost::Options::kOptionsFile, std::string("console.idle-timeout=") + bad + "\n");
        EXPECT_EQ(options.GetOption(timeout)->intValue, 600) << bad;
    }
    EXPECT_TRUE(Logged("console.idle-timeout=ten is not valid; using 600"));
    EXPECT_FALSE(LinuxHost::Options::Set("support.tls-certificate", "relative/path"));
}

TEST_F(LinuxSystem, KeyboardLayoutIsWrittenAndAppliedOrLeftAsItWas) {
    Write("/usr/share/X11/xkb/rules/base.lst",
          "! model\n  pc105  Generic 105-key PC\n\n! layout\n  us  English (US)\n"
          "  de  German\n  fr  French\n\n! variant\n  nodeadkeys  de: German (no dead keys)\n");
    Write("/etc/default/keyboard",
          "# KEYBOARD CONFIGURATION FILE\nXKBMODEL=\"pc105\"\n"
          "XKBLAYOUT=\"us,de\"\nXKBVARIANT=\"intl\"\nBACKSPACE=\"guess\"\n");
    Write("/bin/setupcon", "#!/bin/sh\necho \"$*\" >> " + root_ + "/calls\n", 0755);
    LinuxHost::SystemInfoImpl info;
    EXPECT_EQ(info.GetKeyboardLayouts(),
              (std::vector<std::string>{"English (US)", "German", "French"}));
    EXPECT_EQ(info.GetKeyboardLayout(), "English (US)");

    info.LoadKeyboardMappings("German");
    info.SetKeyboardLayout("German");
    EXPECT_EQ(info.GetKeyboardLayout(), "German");
    EXPECT_EQ(Read("/etc/default/keyboard"),
              "# KEYBOARD CONFIGURATION FILE\nXKBMODEL=\"pc105\"\nXKBLAYOUT=\"de\"\n"
              "XKBVARIANT=\"\"\nBACKSPACE=\"guess\"\n");
    EXPECT_EQ(Read("/calls"), "-k\n");

    EXPECT_THROW(info.SetKeyboardLayout("Klingon"), HostCtlException);
    Write("/bin/setupcon", "#!/bin/sh\nexit 1\n", 0755);
    const std::string before = Read("/etc/default/keyboard");
    EXPECT_THROW(info.LoadKeyboardMappings("French"), HostCtlException);
    EXPECT_EQ(Read("/etc/default/keyboard"), before);
}

TEST_F(LinuxSystem, SmartCardLoginIsNotOfferedAndSaysWhy) {
    EXPECT_EQ(LinuxHost::WhySmartCardLoginNotOffered(),
              "No smart-card reader service (pcscd) runs on this host.");
    Write(LinuxHost::kPcscdSocket, "a plain file is no daemon");
    EXPECT_EQ(LinuxHost::WhySmartCardLoginNotOffered(),
              "No smart-card reader service (pcscd) runs on this host.");
    fs::remove(root_ + LinuxHost::kPcscdSocket);
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::snprintf(address.sun_path, sizeof address.sun_path, "%s%s", root_.c_str(),
                  LinuxHost::kPcscdSocket);
    ASSERT_EQ(::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    // A socket nobody listens on.
    EXPECT_EQ(LinuxHost::WhySmartCardLoginNotOffered(),
              "The smart-card reader service (pcscd) does not answer.");
    ::close(fd);
}

TEST_F(LinuxSystem, BackupAndResetTouchOnlyWhatTheConsoleWrote) {
    const std::vector<std::string> ours = {
        LinuxHost::Options::kOptionsFile, "/etc/systemd/network/30-tesk-management.network",
        "/run/systemd/network/05-tesk-management.network", "/etc/profile.d/tesk-timeout.sh",
        "/etc/systemd/system/ssh.service.d/tesk-availability.conf"};
    const std::vector<std::string> theirs = {"/etc/systemd/network/10-uplink.network",
                                             "/etc/systemd/network/30-teskish.network",
                                             "/etc/default/keyboard"};
    for (const auto& file : ours) Write(file, "ours " + file);
    for (const auto& file : theirs) Write(file, "theirs");
    LinuxHost::HostConfigurationImpl configuration;

    ASSERT_TRUE(configuration.Backup());
    EXPECT_EQ(Read(std::string(LinuxHost::kBackupDirectory) +
                   "/etc_systemd_network_30-tesk-management.network"),
              "ours /etc/systemd/network/30-tesk-management.network");
    EXPECT_EQ(std::distance(fs::directory_iterator(root_ + LinuxHost::kBackupDirectory),
                            fs::directory_iterator{}),
              static_cast<long>(ours.size()));

    ASSERT_TRUE(configuration.ResetToFactoryDefaults());
    for (const auto& file : ours) EXPECT_FALSE(Exists(file)) << file;
    for (const auto& file : theirs) EXPECT_TRUE(Exists(file)) << file;
    EXPECT_FALSE(configuration.HasCustomExtensions());
}

TEST_F(LinuxSystem, LogsShowTheJournalByGroupAndThePlainFiles) {
    LinuxHost::SystemLogsImpl logs;
    Write("/var/log/auth.log", "sshd: accepted\n");
    auto listed = logs.GetLogs();
    ASSERT_EQ(listed.size(), 1u) << "no journal on this host";
    EXPECT_EQ(logs.PrepareLog(listed[0].id)->HostPath(), "/var/log/auth.log");
    EXPECT_THROW(logs.PrepareLog("/etc/shadow"), HostCtlException);

    const char* remote = "/lib/systemd/systemd-journal-remote";
    if (::access(remote, X_OK) != 0) GTEST_SKIP() << remote << " is not installed";
    Write("/in.export",
          "__REALTIME_TIMESTAMP=1700000000000000\n__MONOTONIC_TIMESTAMP=1\n"
          "_BOOT_ID=0123456789abcdef0123456789abcdef\n_HOSTNAME=labhost\n"
          "SYSLOG_IDENTIFIER=sshd\n_PID=42\n_SYSTEMD_UNIT=ssh.service\n"
          "MESSAGE=Accepted password for root\n\n"
          "__REALTIME_TIMESTAMP=1700000001000000\n__MONOTONIC_TIMESTAMP=2\n"
          "_BOOT_ID=0123456789abcdef0123456789abcdef\n_HOSTNAME=labhost\n"
          "_TRANSPORT=kernel\nMESSAGE=eth0: link up\n\n");
    fs::create_directories(root_ + "/var/log/journal");
    const std::string make = std::string(remote) + " -o " + root_ +
                             "/var/log/journal/lab.journal " + root_ + "/in.export 2>/dev/null";
    ASSERT_EQ(std::system(make.c_str()), 0);

    listed = logs.GetLogs();
    ASSERT_EQ(listed.size(), LinuxHost::kJournalGroups.size() + 1);
    EXPECT_EQ(listed.back().title, "Logins (/var/log/auth.log)");
    struct Case {
        const char* id;
        const char* shows;
        const char* hides;
    } cases[] = {
        {"journal:access", "labhost sshd[42]: Accepted password for root\n", "link up"},
        {"journal:kernel", "labhost kernel: eth0: link up\n", "sshd"},
        {"journal:all", "sshd[42]", "(no entries)"},
        {"journal:machines", "(no entries)", "sshd"},
    };
    std::string exported;
    for (const auto& c : cases) {
        auto log = logs.PrepareLog(c.id);
        exported = log->HostPath();
        const std::string text = Read(exported);
        EXPECT_NE(text.find(c.shows), std::string::npos) << c.id << ": " << text;
        EXPECT_EQ(text.find(c.hides), std::string::npos) << c.id << ": " << text;
    }
    EXPECT_FALSE(Exists(exported)) << "the copy for the pager is removed";
}

}  // namespace
