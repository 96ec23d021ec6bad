// The contract of the administration interfaces (hostctl/shell_services.h,
// hostctl/lockdown.h, hostctl/configuration.h, hostctl/support_info.h): what
// each operation does, how it fails and what a failure leaves as it was.
#include "hostctl/exception.h"
#include "tests/contract/contract.h"

namespace {

using namespace TeskContract;
using HostCtl::Services::Service;
using HostCtl::Services::ShellTimeout;

class AdminContract : public OnManagedHostWithConditions {};

const char* Name(Service service) {
    return service == Service::Shell ? "shell" : "SSH";
}

TEST_F(AdminContract, ServicesSwitchAsTheUserAndOnlyRunningOnesRestart) {
    const auto services = host().GetShellServices();
    for (Service service : {Service::Shell, Service::Ssh}) {
        SCOPED_TRACE(Name(service));
        EXPECT_FALSE(services->IsRunning(service));

        services->Switch(service, true, "root");
        EXPECT_TRUE(services->IsRunning(service));
        EXPECT_TRUE(conditions().StartsAtBoot(service));
        EXPECT_EQ(conditions().LastActingUser(), "root");

        services->Switch(service, false, "root");
        EXPECT_FALSE(services->IsRunning(service));
        EXPECT_FALSE(conditions().StartsAtBoot(service));

        // The host's management refuses: the service is started its own way,
        // but whether it starts at boot stays as it was.
        conditions().Refuse(HostRefusal::ServiceManagement);
        services->Switch(service, true, "root");
        fixture().Recover();
        EXPECT_TRUE(services->IsRunning(service));
        EXPECT_FALSE(conditions().StartsAtBoot(service));
        services->Switch(service, false, "root");

        // Nothing works: nothing is thrown and nothing changes.
        conditions().Refuse(HostRefusal::ServiceSwitching);
        EXPECT_NO_THROW(services->Switch(service, true, "root"));
        fixture().Recover();
        EXPECT_FALSE(services->IsRunning(service));
        EXPECT_FALSE(conditions().StartsAtBoot(service));
    }
    // SSH switched on opened the firewall for it; switching it off left it open.
    EXPECT_TRUE(conditions().SshFirewallOpen());

    // Only a running service is restarted.
    services->Switch(Service::Ssh, true, "root");
    services->RestartIfRunning(Service::Ssh);
    services->RestartIfRunning(Service::Shell);
    EXPECT_EQ(conditions().Restarts(Service::Ssh), 1);
    EXPECT_EQ(conditions().Restarts(Service::Shell), 0);
    EXPECT_TRUE(services->IsRunning(Service::Ssh));
}

TEST_F(AdminContract, ShellTimeoutsReadBackWhatWasStored) {
    const auto services = host().GetShellServices();
    for (ShellTimeout timeout : {ShellTimeout::Availability, ShellTimeout::Idle}) {
        SCOPED_TRACE(timeout == ShellTimeout::Availability ? "availability" : "idle");
        EXPECT_TRUE(services->SetTimeoutSeconds(timeout, 0));
        EXPECT_EQ(services->GetTimeoutSeconds(timeout), 0);
        ASSERT_TRUE(services->SetTimeoutSeconds(timeout, 86400));
        conditions().Refuse(HostRefusal::TimeoutStore);
        EXPECT_FALSE(services->GetTimeoutSeconds(timeout).has_value());
        EXPECT_FALSE(services->SetTimeoutSeconds(timeout, 60));
        fixture().Recover();
        EXPECT_EQ(services->GetTimeoutSeconds(timeout), 86400);
    }
}

TEST_F(AdminContract, LockdownChangesOnlyWhenItCanAndARefusalThrowsTheHostsText) {
    const auto lockdown = host().GetLockdownMode();
    lockdown->SetEnabled(true);
    conditions().Refuse(HostRefusal::LockdownQuery);
    EXPECT_FALSE(lockdown->IsEnabled()) << "an answer cut short is no";
    EXPECT_FALSE(lockdown->IsPossible());
    fixture().Recover();

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
        conditions().SetLockdownPossible(c.possible);
        EXPECT_EQ(lockdown->IsPossible(), c.possible);
        const std::string hostText =
            c.refused ? conditions().Refuse(HostRefusal::LockdownChange) : "";
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
        fixture().Recover();
        EXPECT_EQ(lockdown->IsEnabled(), fails ? c.enabled : c.wanted);
    }
}

// Backup, factory reset and the custom extensions' removal answer whether
// they worked; a refused one changes nothing.
TEST_F(AdminContract, ConfigurationOperationsWorkUnlessRefused) {
    const auto configuration = host().GetHostConfiguration();
    const auto lockdown = host().GetLockdownMode();
    EXPECT_TRUE(configuration->Backup());
    EXPECT_EQ(conditions().Backups(), 1);
    conditions().Refuse(HostRefusal::Backup);
    EXPECT_FALSE(configuration->Backup());
    EXPECT_EQ(conditions().Backups(), 1);
    fixture().Recover();

    lockdown->SetEnabled(true);
    conditions().Refuse(HostRefusal::FactoryReset);
    EXPECT_FALSE(configuration->ResetToFactoryDefaults());
    fixture().Recover();
    EXPECT_TRUE(lockdown->IsEnabled());
    EXPECT_TRUE(configuration->ResetToFactoryDefaults());
    EXPECT_FALSE(lockdown->IsEnabled());

    conditions().SetCustomExtensionsInstalled(true);
    EXPECT_TRUE(configuration->HasCustomExtensions());
    conditions().Refuse(HostRefusal::ExtensionList);
    EXPECT_FALSE(configuration->HasCustomExtensions());
    fixture().Recover();
    conditions().Refuse(HostRefusal::ExtensionRemoval);
    EXPECT_FALSE(configuration->RemoveCustomExtensions());
    fixture().Recover();
    EXPECT_TRUE(configuration->RemoveCustomExtensions());
    EXPECT_FALSE(configuration->HasCustomExtensions());
}

TEST_F(AdminContract, SupportTextIsTheHostsOrEmpty) {
    const auto support = host().GetSupportInformation();
    conditions().SetSupportText("Serial: ACME-01\n{not markup}\n");
    EXPECT_EQ(support->GetSupportText(), "Serial: ACME-01\n{not markup}\n");
    conditions().SetSupportText(std::nullopt);
    EXPECT_EQ(support->GetSupportText(), "");

    // A text that cannot be read neither blocks nor throws.
    conditions().MakeSupportTextUnreadable();
    EXPECT_EQ(support->GetSupportText(), "");
}

}  // namespace
