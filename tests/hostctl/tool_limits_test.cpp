// Every host tool the simulated backend runs is killed at its time limit:
// each call site against tools that never answer, with the limits shortened
// to one second by the host's setting.
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "hostctl/agents.h"
#include "hostctl/configuration.h"
#include "hostctl/exception.h"
#include "hostctl/lockdown.h"
#include "hostctl/operations_agent.h"
#include "hostctl/pinger.h"
#include "hostctl/port_group_creator.h"
#include "hostctl/power.h"
#include "hostctl/shell_services.h"
#include "platform/waiting.h"
#include "tests/hostctl/fixture.h"

namespace {

using Clock = std::chrono::steady_clock;
using HostCtl::Services::Service;
using HostCtl::Services::ShellTimeout;

constexpr char kKill[] = "Killing process because 1 seconds timeout expired";

struct HungCall {
    const char* what;
    std::vector<const char*> hungTools;  // the faults that make them hang
    int kills;                           // tool runs killed at the limit
    std::function<void(const HostCtl::Backend&)> call;
};

// Ends a call that overruns its time as a quit signal would (the running tool
// is killed, no other starts), so that a tool without a limit fails the test
// instead of hanging it.
class Watchdog {
public:
    explicit Watchdog(std::chrono::milliseconds limit)
        : thread_([this, limit] {
              std::unique_lock lock(mutex_);
              if (!ended_.wait_for(lock, limit, [this] { return done_; }))
                  Tesk::Platform::NoteQuitRequest();
          }) {}
    ~Watchdog() {
        {
            std::lock_guard lock(mutex_);
            done_ = true;
        }
        ended_.notify_one();
        thread_.join();
        Tesk::Platform::ResetQuitRequestForTesting();
    }

private:
    std::mutex mutex_;
    std::condition_variable ended_;
    bool done_ = false;
    std::thread thread_;
};

class ToolLimitsTest : public TeskTest::HostRootTest {};

TEST_F(ToolLimitsTest, EveryToolIsKilledAtItsLimit) {
    using B = const HostCtl::Backend&;
    const std::vector<HungCall> calls = {
        {"custom extensions check",
         {"kovacli"},
         1,
         [](B b) { EXPECT_FALSE(b.GetHostConfiguration()->HasCustomExtensions()); }},
        {"init-script status",
         {"KovaShell"},
         1,
         [](B b) { EXPECT_FALSE(b.GetShellServices()->IsRunning(Service::Shell)); }},
        {"SSH switch",
         {"rux-cmd", "SSH"},
         3,
         [](B b) { b.GetShellServices()->Switch(Service::Ssh, true, "root"); }},
        {"advanced option read",
         {"kovacfg-advcfg"},
         1,
         [](B b) {
             EXPECT_FALSE(b.GetShellServices()->GetTimeoutSeconds(ShellTimeout::Availability));
         }},
        {"advanced option write",
         {"kovacli", "kovacli-local"},
         2,
         [](B b) {
             EXPECT_FALSE(b.GetShellServices()->SetTimeoutSeconds(ShellTimeout::Availability, 60));
         }},
        {"backup", {"backup.sh"}, 1, [](B b) { EXPECT_FALSE(b.GetHostConfiguration()->Backup()); }},
        {"apply refresh", {"rux-cmd"}, 1, [](B b) { b.GetManagementAgents()->Refresh(""); }},
        {"machines' stop order and power-off",
         {"rux-cmd", "powerOffVms"},
         2,
         [](B b) { b.GetPowerControl()->StopVirtualMachines("root", true); }},
        {"host power-off",
         {"poweroff"},
         1,
         [](B b) { EXPECT_FALSE(b.GetPowerControl()->PowerOffHost()); }},
        {"configuration reset",
         {"factoryConfig.py"},
         1,
         [](B b) { EXPECT_FALSE(b.GetHostConfiguration()->ResetToFactoryDefaults()); }},
        {"agents' stop", {"services.sh"}, 1, [](B b) { b.GetManagementAgents()->Stop(); }},
        {"live core",
         {"zrkbacktrace"},
         1,
         [](B b) { EXPECT_FALSE(b.GetManagementAgents()->CollectLiveCore()); }},
        {"ping", {"zrkping"}, 1, [](B b) { EXPECT_FALSE(b.GetPinger()->Ping("192.168.10.1")); }},
        {"port group repair",
         {"kovacli"},
         1,
         [](B b) { EXPECT_FALSE(b.GetPortGroupCreator()->CreatePortGroup("Repair", "zSwitch0")); }},
        {"operations agent check",
         {"plex-opsagent"},
         1,
         [](B b) { EXPECT_FALSE(b.GetOperationsAgent()->IsVersion3Present()); }},
        {"NIC migration",
         {"plex-opsagent", "plexcfg-vswitch"},
         2,
         [](B b) {
             EXPECT_FALSE(b.GetOperationsAgent()->MigrateZrkNic("zrk1", "Storage Network"));
         }},
        {"lockdown query",
         {"rux-cmd"},
         1,
         [](B b) { EXPECT_FALSE(b.GetLockdownMode()->IsEnabled()); }},
        {"lockdown change",
         {"rux-cmd"},
         1,
         [](B b) {
             EXPECT_THROW(b.GetLockdownMode()->SetEnabled(true), HostCtl::Lib::HostCtlException);
         }},
    };
    root().editState([](TeskTest::Json& s) { s["console"]["toolTimeLimitSeconds"] = 1; });
    for (const HungCall& c : calls) {
        SCOPED_TRACE(c.what);
        for (const char* tool : c.hungTools) root().setFault(tool, {{"hang", true}});
        const size_t killsBefore = root().logLinesWith(kKill).size();
        const auto allowed = TeskTest::Scaled(std::chrono::seconds(c.kills + 2));
        const auto started = Clock::now();
        {
            Watchdog watchdog(allowed);
            c.call(HostCtl::TheBackend());
        }
        EXPECT_LT(Clock::now() - started, allowed);
        EXPECT_EQ(root().logLinesWith(kKill).size() - killsBefore, static_cast<size_t>(c.kills))
            << root().logTail();
        for (const char* tool : c.hungTools) root().setFault(tool, nullptr);
    }
}

}  // namespace
