// The Linux backend's running parts against the lab's stand-ins: libvirt's
// test driver, and python3-dbusmock's systemd and logind on the lab's bus
// (their call files show what reached them, in order). Run through
// scripts/lab.sh; outside a lab every case skips.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "hostctl/offers.h"
#include "linuxhost/backend.h"
#include "linuxhost/options.h"
#include "linuxhost/shell_timeouts.h"
#include "platform/host_platform.h"
#include "tests/harness/lab_environment.h"

using namespace TeskTest;

namespace {

using HostCtl::Services::Service;
using HostCtl::Services::ShellTimeout;

// The calls a stand-in received since the case began, without their times.
class Calls {
public:
    explicit Calls(const char* variable) : path_(Env(variable)), skip_(Lines().size()) {}
    std::vector<std::string> Lines() const {
        std::vector<std::string> lines;
        std::istringstream in(ReadFile(path_));
        for (std::string line; std::getline(in, line);)
            lines.push_back(line.substr(line.find(' ') + 1));
        return lines;
    }
    // Waits (a stand-in may write a moment after it answered) for count calls.
    std::vector<std::string> Since(std::size_t count) const {
        for (int tries = 0; tries < 100; ++tries) {
            const auto lines = Lines();
            if (lines.size() >= skip_ + count || tries == 99)
                return {lines.begin() + static_cast<long>(std::min(skip_, lines.size())),
                        lines.end()};
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        return {};
    }

private:
    std::string path_;
    std::size_t skip_;
};

// The calls that change units (the stand-in also logs its signals and the
// property reads).
std::vector<std::string> UnitChanges(const std::vector<std::string>& calls) {
    std::vector<std::string> changes;
    for (const auto& call : calls)
        for (const char* verb :
             {"StartUnit ", "StopUnit ", "EnableUnitFiles ", "DisableUnitFiles "})
            if (call.rfind(verb, 0) == 0) changes.push_back(call);
    return changes;
}

class LinuxRunLab : public ::testing::Test {
protected:
    void SetUp() override {
        if (Env("LAB_DIR").empty()) GTEST_SKIP() << "needs the lab (scripts/lab.sh)";
        root_ = Env("TESK_ROOT");
        Tesk::Platform::InstallHostPlatform(LinuxHost::MakeLinuxPlatform());
        ASSERT_TRUE(LinuxHost::Options::Set("machines.shutdown_seconds", "2"));
        backend_ = LinuxHost::MakeLinuxBackend();
    }

    std::string root_;
    std::unique_ptr<HostCtl::Backend> backend_;
};

// (The screen tests check the graceful way, and logind, through the console.)
TEST_F(LinuxRunLab, ForcedStopPowersTheRunningMachinesOff) {
    EXPECT_TRUE(backend_->GetResourceInfo()->HasRunningVirtualMachines());
    const auto power = backend_->GetPowerControl();
    power->StopVirtualMachines("root", false);
    const std::string log = LabLog();
    for (const char* line : {"Virtual machine web01 powered off by force",
                             "Virtual machine db01 powered off by force"})
        EXPECT_NE(log.find(line), std::string::npos) << line << "\n" << log;
    // The test node's shut-off machines are left alone.
    EXPECT_EQ(log.find("build01"), std::string::npos);
    EXPECT_TRUE(power->PowerOffAllVirtualMachines());
}

TEST_F(LinuxRunLab, ShellServicesAndAgentsAreSystemdUnits) {
    // The stand-in has no unit-file methods of its own.
    ASSERT_EQ(std::system("busctl call org.freedesktop.systemd1 /org/freedesktop/systemd1 "
                          "org.freedesktop.DBus.Mock AddMethod sssss "
                          "org.freedesktop.systemd1.Manager EnableUnitFiles asbb 'ba(sss)' "
                          "'ret = (True, [])' && "
                          "busctl call org.freedesktop.systemd1 /org/freedesktop/systemd1 "
                          "org.freedesktop.DBus.Mock AddMethod sssss "
                          "org.freedesktop.systemd1.Manager DisableUnitFiles asb 'a(sss)' "
                          "'ret = []'"),
              0);
    const auto services = backend_->GetShellServices();
    const Calls systemd("LAB_SYSTEMD_CALLS");
    services->Switch(Service::Ssh, true, "root");
    EXPECT_TRUE(services->IsRunning(Service::Ssh));
    services->Switch(Service::Ssh, false, "root");
    EXPECT_FALSE(services->IsRunning(Service::Ssh));
    EXPECT_EQ(
        UnitChanges(systemd.Since(10)),
        (std::vector<std::string>{
            "StartUnit \"ssh.service\" \"replace\"", "EnableUnitFiles [\"ssh.service\"] False True",
            "StopUnit \"ssh.service\" \"replace\"", "DisableUnitFiles [\"ssh.service\"] False"}));

    // Stopped last to first, started first to last.
    ASSERT_TRUE(LinuxHost::Options::Set("units.agents", "cron.service libvirtd.service"));
    const Calls agentCalls("LAB_SYSTEMD_CALLS");
    const auto agents = backend_->GetManagementAgents();
    agents->Stop();
    agents->Start();
    EXPECT_EQ(UnitChanges(agentCalls.Since(16)),
              (std::vector<std::string>{"StopUnit \"libvirtd.service\" \"replace\"",
                                        "StopUnit \"cron.service\" \"replace\"",
                                        "StartUnit \"cron.service\" \"replace\"",
                                        "StartUnit \"libvirtd.service\" \"replace\""}));
    EXPECT_FALSE(backend_->WhyNotOffered(HostCtl::Feature::LiveCoreDump).empty());
    EXPECT_FALSE(backend_->WhyNotOffered(HostCtl::Feature::LockdownMode).empty());
}

TEST_F(LinuxRunLab, TimeoutsAreWrittenWhereTheHostReadsThem) {
    const auto services = backend_->GetShellServices();
    const std::string idle = root_ + LinuxHost::kIdleTimeoutFile;
    const std::string sshDropIn =
        root_ + "/etc/systemd/system/ssh.service.d/" + LinuxHost::kAvailabilityDropIn;
    const std::string shellDropIn =
        root_ + "/etc/systemd/system/getty@tty2.service.d/" + LinuxHost::kAvailabilityDropIn;

    ASSERT_TRUE(services->SetTimeoutSeconds(ShellTimeout::Idle, 900));
    ASSERT_TRUE(services->SetTimeoutSeconds(ShellTimeout::Availability, 3600));
    EXPECT_NE(ReadFile(idle).find("\nTMOUT=900\n"), std::string::npos) << ReadFile(idle);
    for (const auto& dropIn : {sshDropIn, shellDropIn})
        EXPECT_NE(ReadFile(dropIn).find("[Service]\nRuntimeMaxSec=3600\n"), std::string::npos)
            << dropIn;
    EXPECT_EQ(services->GetTimeoutSeconds(ShellTimeout::Idle), 900);
    EXPECT_EQ(services->GetTimeoutSeconds(ShellTimeout::Availability), 3600);

    // 0 means none: the files go.
    ASSERT_TRUE(services->SetTimeoutSeconds(ShellTimeout::Idle, 0));
    ASSERT_TRUE(services->SetTimeoutSeconds(ShellTimeout::Availability, 0));
    EXPECT_FALSE(std::ifstream(idle).good());
    EXPECT_FALSE(std::ifstream(sshDropIn).good());
    EXPECT_EQ(services->GetTimeoutSeconds(ShellTimeout::Idle), 0);

    // A file that is not ours gives no answer rather than a wrong one.
    std::ofstream(idle) << "TMOUT=soon\n";
    EXPECT_EQ(services->GetTimeoutSeconds(ShellTimeout::Idle), std::nullopt);
}

}  // namespace
