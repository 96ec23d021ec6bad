// The contract of the administration interfaces (hostctl/shell_services.h,
// hostctl/lockdown.h, hostctl/configuration.h, hostctl/support_info.h): what
// each operation does, how it fails and what a failure leaves as it was.
// Written against the interfaces and the backend's AdminHost (admin_host.h)
// only, and run once per backend.
#include <gtest/gtest.h>

#include "hostctl/exception.h"
#include "tests/contract/admin_host.h"

namespace ContractTest {
namespace {

using HostCtl::Services::Service;
using HostCtl::Services::ShellTimeout;

class AdminContract : public ::testing::TestWithParam<AdminBackend> {
protected:
    void SetUp() override { host_ = GetParam().make(); }
    AdminHost& host() { return *host_; }
    const HostCtl::Backend& backend() { return host_->backend(); }

private:
    std::unique_ptr<AdminHost> host_;
};

const char* Name(Service service) {
    return service == Service::Shell ? "shell" : "SSH";
}

TEST_P(AdminContract, ServicesSwitchAsTheUserAndAFailedStepLeavesItsPart) {
    const auto services = backend().GetShellServices();
    for (Service service : {Service::Shell, Service::Ssh}) {
        SCOPED_TRACE(Name(service));
        EXPECT_FALSE(services->IsRunning(service));

        services->Switch(service, true, "root");
        EXPECT_TRUE(services->IsRunning(service));
        EXPECT_TRUE(host().startsAtBoot(service));
        EXPECT_EQ(host().lastActingUser(), "root");

        services->Switch(service, false, "root");
        EXPECT_FALSE(services->IsRunning(service));
        EXPECT_FALSE(host().startsAtBoot(service));

        // The host's management refuses: the service is started its own way,
        // but whether it starts at boot stays as it was.
        host().refuse(Refusal::ServiceManagement);
        services->Switch(service, true, "root");
        host().allow();
        EXPECT_TRUE(services->IsRunning(service));
        EXPECT_FALSE(host().startsAtBoot(service));
        services->Switch(service, false, "root");

        // Nothing works: nothing is thrown and nothing changes.
        host().refuse(Refusal::ServiceSwitching);
        EXPECT_NO_THROW(services->Switch(service, true, "root"));
        host().allow();
        EXPECT_FALSE(services->IsRunning(service));
        EXPECT_FALSE(host().startsAtBoot(service));
    }
    // SSH switched on opened the firewall for it; switching it off left it open.
    EXPECT_TRUE(host().sshFirewallOpen());
}

TEST_P(AdminContract, OnlyARunningServiceIsRestarted) {
    const auto services = backend().GetShellServices();
    services->Switch(Service::Ssh, true, "root");
    for (Service service : {Service::Shell, Service::Ssh}) {
        SCOPED_TRACE(Name(service));
        const bool running = services->IsRunning(service);
        const int before = host().restarts(service);
        services->RestartIfRunning(service);
        EXPECT_EQ(host().restarts(service), before + (running ? 1 : 0));
        EXPECT_EQ(services->IsRunning(service), running);
    }
}

TEST_P(AdminContract, ShellTimeoutsReadBackWhatWasStored) {
    const auto services = backend().GetShellServices();
    for (ShellTimeout timeout : {ShellTimeout::Availability, ShellTimeout::Idle}) {
        SCOPED_TRACE(timeout == ShellTimeout::Availability ? "availability" : "idle");
        for (unsigned long long seconds : {1800ull, 86400ull, 0ull}) {
            EXPECT_TRUE(services->SetTimeoutSeconds(timeout, seconds));
            EXPECT_EQ(services->GetTimeoutSeconds(timeout), static_cast<long>(seconds));
        }
        ASSERT_TRUE(services->SetTimeoutSeconds(timeout, 600));
        host().refuse(Refusal::TimeoutStore);
        EXPECT_FALSE(services->GetTimeoutSeconds(timeout).has_value());
        EXPECT_FALSE(services->SetTimeoutSeconds(timeout, 60));
        host().allow();
        EXPECT_EQ(services->GetTimeoutSeconds(timeout), 600);
    }
}

TEST_P(AdminContract, LockdownChangesOnlyWhenItCanAndARefusalThrowsTheHostsText) {
    const auto lockdown = backend().GetLockdownMode();
    EXPECT_FALSE(lockdown->IsEnabled());
    EXPECT_TRUE(lockdown->IsPossible());
    lockdown->SetEnabled(true);
    EXPECT_TRUE(lockdown->IsEnabled());

    host().refuse(Refusal::LockdownQuery);
    EXPECT_FALSE(lockdown->IsEnabled()) << "an answer cut short is no";
    EXPECT_FALSE(lockdown->IsPossible());
    host().allow();

    struct Case {
        const char* what;
        bool enabled;  // the state before
        bool possible;
        bool wanted;
        bool refused;
    };
    const Case cases[] = {
        {"on while on", true, true, true, false},
        {"off while refused", true, true, false, true},
        {"off", true, true, false, false},
        {"off while off", false, true, false, false},
        {"on while not possible", false, false, true, false},
        {"on while refused", false, true, true, true},
        {"on", false, true, true, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ASSERT_EQ(lockdown->IsEnabled(), c.enabled);
        host().setLockdownPossible(c.possible);
        EXPECT_EQ(lockdown->IsPossible(), c.possible);
        const std::string hostText = c.refused ? host().refuse(Refusal::LockdownChange) : "";
        const bool fails = c.refused || c.wanted == c.enabled || (c.wanted && !c.possible);
        try {
            lockdown->SetEnabled(c.wanted);
            EXPECT_FALSE(fails) << "no exception";
        } catch (const HostCtl::Lib::HostCtlException& e) {
            EXPECT_TRUE(fails) << e.what();
            EXPECT_NE(std::string(e.what()), "");
            if (c.refused) {
                EXPECT_EQ(e.what(), hostText);
            }
        }
        host().allow();
        EXPECT_EQ(lockdown->IsEnabled(), fails ? c.enabled : c.wanted);
    }
}

TEST_P(AdminContract, BackupSavesAndSaysSo) {
    const auto configuration = backend().GetHostConfiguration();
    EXPECT_TRUE(configuration->Backup());
    EXPECT_EQ(host().backups(), 1);
    host().refuse(Refusal::Backup);
    EXPECT_FALSE(configuration->Backup());
    EXPECT_EQ(host().backups(), 1);
}

TEST_P(AdminContract, FactoryResetUndoesConfigurationChangesUnlessRefused) {
    const auto configuration = backend().GetHostConfiguration();
    const auto services = backend().GetShellServices();
    const auto lockdown = backend().GetLockdownMode();
    const auto info = backend().GetSystemInfo();
    const std::string layout = info->GetKeyboardLayout();
    const std::vector<std::string> offered = info->GetKeyboardLayouts();
    ASSERT_GE(offered.size(), 2u);
    const std::string other = offered[0] == layout ? offered[1] : offered[0];

    lockdown->SetEnabled(true);
    services->Switch(Service::Ssh, true, "root");
    info->SetKeyboardLayout(other);

    host().refuse(Refusal::FactoryReset);
    EXPECT_FALSE(configuration->ResetToFactoryDefaults());
    host().allow();
    EXPECT_TRUE(lockdown->IsEnabled());
    EXPECT_TRUE(services->IsRunning(Service::Ssh));
    EXPECT_EQ(info->GetKeyboardLayout(), other);

    EXPECT_TRUE(configuration->ResetToFactoryDefaults());
    EXPECT_FALSE(lockdown->IsEnabled());
    EXPECT_FALSE(services->IsRunning(Service::Ssh));
    EXPECT_FALSE(host().startsAtBoot(Service::Ssh));
    EXPECT_EQ(info->GetKeyboardLayout(), layout);
}

TEST_P(AdminContract, CustomExtensionsAreListedAndRemovedUnlessRefused) {
    const auto configuration = backend().GetHostConfiguration();
    host().setCustomExtensionsInstalled(false);
    EXPECT_FALSE(configuration->HasCustomExtensions());

    host().setCustomExtensionsInstalled(true);
    EXPECT_TRUE(configuration->HasCustomExtensions());
    host().refuse(Refusal::ExtensionList);
    EXPECT_FALSE(configuration->HasCustomExtensions());
    host().allow();

    host().refuse(Refusal::ExtensionRemoval);
    EXPECT_FALSE(configuration->RemoveCustomExtensions());
    host().allow();
    EXPECT_TRUE(configuration->HasCustomExtensions());

    EXPECT_TRUE(configuration->RemoveCustomExtensions());
    EXPECT_FALSE(configuration->HasCustomExtensions());
}

TEST_P(AdminContract, SupportTextIsTheHostsOrEmpty) {
    const auto support = backend().GetSupportInformation();
    host().setSupportText("Serial: ACME-01\n{not markup}\n");
    EXPECT_EQ(support->GetSupportText(), "Serial: ACME-01\n{not markup}\n");
    host().setSupportText(std::nullopt);
    EXPECT_EQ(support->GetSupportText(), "");

    // A text that cannot be read neither blocks nor throws.
    host().makeSupportTextUnreadable();
    EXPECT_EQ(support->GetSupportText(), "");
}

INSTANTIATE_TEST_SUITE_P(Backends, AdminContract,
                         ::testing::Values(AdminBackend{"simulated", &MakeSimulatedAdminHost}),
                         [](const auto& backend) { return std::string(backend.param.name); });

}  // namespace
}  // namespace ContractTest
