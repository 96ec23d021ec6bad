// The Linux host's change record on a fixture root: Begin keeps our networkd
// files, /etc/hostname and a plain resolv.conf; PutBack brings back changed
// and removed files, drops the ones the change added and calls the hook; a
// second Begin is refused while a change is recorded, and a damaged record is
// reported as a host failure. A network change's files are on trial under /run
// (the previous ones stay in /etc) until it is kept or put back.
#include "linuxhost/change_record.h"
#include "linuxhost/networkd_trial.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "hostctl/exception.h"
#include "tests/support/fixture_root.h"

namespace {

namespace fs = std::filesystem;
using HostCtl::Changes::ChangeKind;
using HostCtl::Lib::HostCtlException;

class FileChangeRecordTest : public TeskTest::FixtureRootTest {
protected:
    void SetUp() override {
        FixtureRootTest::SetUp();
        fs::create_directories(root_ + "/etc/systemd/network");
    }
};

TEST_F(FileChangeRecordTest, PutBackRestoresChangedAddedAndRemovedFiles) {
    const std::string net = "/etc/systemd/network/";
    Write(net + "60-tesk-br0.network", "[Network]\nDHCP=yes\n");
    Write(net + "60-tesk-br0.netdev", "[NetDev]\nName=br0\n");
    Write(net + "10-other.network", "not ours\n");
    Write("/etc/hostname", "old-name\n");
    Write("/etc/resolv.conf", "nameserver 192.0.2.53\n");
    int followed = 0;
    LinuxHost::FileChangeRecord record([&](ChangeKind kind) {
        EXPECT_EQ(kind, ChangeKind::ManagementNetwork);
        ++followed;
    });

    record.Begin(ChangeKind::ManagementNetwork);
    EXPECT_THROW(record.Begin(ChangeKind::ManagementNetwork), HostCtlException);
    record.SetRevertAt(1234);
    const auto pending = record.Pending();
    ASSERT_TRUE(pending);
    EXPECT_EQ(pending->owner, ::getpid());
    EXPECT_EQ(pending->revertAt, 1234);
    EXPECT_TRUE(pending->ownerRunning);

    Write(net + "60-tesk-br0.network", "[Network]\nAddress=192.0.2.5/24\n");
    fs::remove(root_ + net + "60-tesk-br0.netdev");
    Write(net + "60-tesk-br0.7.network", "[Network]\n");
    Write(net + "10-other.network", "changed by someone else\n");
    Write("/etc/hostname", "new-name\n");
    Write("/etc/resolv.conf", "nameserver 198.51.100.53\n");
    record.PutBack();

    EXPECT_EQ(followed, 1);
    EXPECT_EQ(Read(net + "60-tesk-br0.network"), "[Network]\nDHCP=yes\n");
    EXPECT_EQ(Read(net + "60-tesk-br0.netdev"), "[NetDev]\nName=br0\n");
    EXPECT_FALSE(Exists(net + "60-tesk-br0.7.network"));
    EXPECT_EQ(Read(net + "10-other.network"), "changed by someone else\n");
    EXPECT_EQ(Read("/etc/hostname"), "old-name\n");
    EXPECT_EQ(Read("/etc/resolv.conf"), "nameserver 192.0.2.53\n");
    EXPECT_FALSE(record.Pending());
    // Nothing recorded: nothing to put back, and a new change may begin.
    record.PutBack();
    EXPECT_EQ(followed, 1);
    record.Begin(ChangeKind::AgentsRestart);
    record.Finish();
    EXPECT_FALSE(record.Pending());
}

TEST_F(FileChangeRecordTest, ANetworkChangeIsOnTrialUntilKeptOrPutBack) {
    const std::string etc = "/etc/systemd/network/", run = "/run/systemd/network/";
    const LinuxHost::NetworkdFiles before = {
        {"60-tesk-br0.netdev", "[NetDev]\nName=br0\n"},
        {"60-tesk-br0.network", "[Match]\nName=br0\n\n[Network]\nVLAN=br0.5\n"},
        {"60-tesk-br0.5.network", "[Match]\nName=br0.5\n\n[Network]\nAddress=192.0.2.5/24\n"}};
    const LinuxHost::NetworkdFiles after = {
        {"60-tesk-br0.netdev", "[NetDev]\nName=br0\n"},
        {"60-tesk-br0.network", "[Match]\nName=br0\n\n[Network]\nDHCP=yes\n"}};
    for (const bool keep : {true, false}) {
        SCOPED_TRACE(keep ? "kept" : "put back");
        fs::remove_all(root_ + "/etc/systemd/network");
        fs::create_directories(root_ + "/etc/systemd/network");
        for (const auto& [name, text] : before) Write(etc + name, text);
        LinuxHost::FileChangeRecord record([](ChangeKind) {});

        record.Begin(ChangeKind::ManagementNetwork);
        EXPECT_TRUE(LinuxHost::OnTrial());
        EXPECT_EQ(LinuxHost::ReadOurFiles(), before);
        LinuxHost::WriteOurFiles(after);
        EXPECT_EQ(LinuxHost::ReadOurFiles(), after);
        EXPECT_EQ(LinuxHost::ReadOurInstalledFiles(), before);
        EXPECT_EQ(Read(run + "59-tesk-br0.network"), after.at("60-tesk-br0.network"));
        // networkd takes the trial's file for br0.5 first: it configures nothing.
        const std::string dropped = Read(run + "59-tesk-br0.5.network");
        EXPECT_NE(dropped.find("[Match]\nName=br0.5\n"), std::string::npos) << dropped;
        EXPECT_EQ(dropped.find("Address="), std::string::npos) << dropped;

        if (keep)
            record.Finish();
        else
            record.PutBack();
        EXPECT_FALSE(LinuxHost::OnTrial());
        EXPECT_FALSE(record.Pending());
        EXPECT_EQ(LinuxHost::ReadOurInstalledFiles(), keep ? after : before);
        EXPECT_TRUE(fs::is_empty(root_ + "/run/systemd/network"));
    }
}

TEST_F(FileChangeRecordTest, ADamagedRecordIsReportedNotPutBack) {
    LinuxHost::FileChangeRecord record([](ChangeKind) { FAIL() << "nothing to follow"; });
    fs::create_directories(root_ + "/var/lib/tesk");
    for (const char* text : {"kind managementNetwork\nowner 1\nfile /etc/hostname 900\nshort\n",
                             "kind managementNetwork\nowner", "garbage line\n", "owner x\n"}) {
        SCOPED_TRACE(text);
        Write(LinuxHost::kChangeRecordFile, text);
        EXPECT_THROW(record.Pending(), HostCtlException);
        EXPECT_THROW(record.PutBack(), HostCtlException);
        EXPECT_THROW(record.Begin(ChangeKind::ManagementNetwork), HostCtlException);
    }
}

}  // namespace
