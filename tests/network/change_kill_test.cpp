// Changes of several steps killed at random moments: after the next start's
// recovery the host is wholly as it was before or wholly as the change left
// it, never a mix. Each change runs in a child process (its own process
// group, so the host tools it started die with it), killed with SIGKILL at a
// time drawn from a seeded range across the change's measured duration.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <random>
#include <thread>

#include "admin/restart_agents_dialog.h"
#include "host/recorded_change.h"
#include "recovery/restore_network_dialog.h"
#include "recovery/safe_mode_network.h"
#include "store/state.h"
#include "tests/network/apply_fixture.h"

namespace TeskTest {
namespace {

using HostCtl::Changes::ChangeKind;
using Clock = std::chrono::steady_clock;

constexpr int kKills = 20;

// What must be wholly old or wholly new after a change of the kind.
Json Projection(ChangeKind kind, const Json& state) {
    if (kind == ChangeKind::AgentsRestart)
        return {state.value("hostAgent", Json::object()).value("running", true),
                state.value("services", Json::object())};
    Json net = state["network"];
    net.erase("outside");
    if (kind == ChangeKind::FactoryNetworkRestore) return {net, state["vms"]};
    return net;
}

class ChangeKill : public ApplyTest, public ::testing::WithParamInterface<ChangeKind> {
protected:
    // The change as the console makes it; runs in the child.
    void Change() {
        const Tesk::HostContext host{HostCtl::TheBackend(), "root"};
        switch (GetParam()) {
            case ChangeKind::ManagementNetwork: {
                auto p = FullChange();
                FakeInput keys({});
                Tesk::RecordedChange change(host.backend, ChangeKind::ManagementNetwork);
                Tesk::ApplyNetworkChanges(nullptr, host, p, nullptr);
                change.Finish();
                break;
            }
            case ChangeKind::FactoryNetworkRestore: {
                // <Enter> stops the running machines, and closes the progress.
                FakeInput keys({Tesk::KeyEnter, Tesk::KeyEnter});
                Tesk::DoRestoreNetworkDialog restore(nullptr, host);
                Tesk::Run(restore);
                break;
            }
            case ChangeKind::StandardSwitchRestore:
                Tesk::EnableSafeModeNetworking(host);
                break;
            case ChangeKind::AgentsRestart: {
                FakeInput keys({KEY_F(11), Tesk::KeyEnter});
                Tesk::RestartAgentsDialog restart(nullptr, host.backend);
                Tesk::Run(restart);
                break;
            }
        }
    }

    // Starts the change in a child, killed after delay unless it ends first;
    // its exit status (-1 when killed).
    int RunChild(std::chrono::microseconds delay) {
        const pid_t pid = ::fork();
        if (pid < 0) return -2;
        if (pid == 0) {
            ::setpgid(0, 0);
            try {
                Change();
            } catch (...) {
                ::_exit(2);
            }
            ::_exit(0);
        }
        ::setpgid(pid, pid);
        const auto end = Clock::now() + delay;
        int status = 0;
        while (::waitpid(pid, &status, WNOHANG) == 0) {
            if (Clock::now() >= end) {
                ::kill(-pid, SIGKILL);
                ::waitpid(pid, &status, 0);
                return -1;
            }
            std::this_thread::sleep_for(std::chrono::microseconds(500));
        }
        ::kill(-pid, SIGKILL);  // any tool it left behind
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
};

TEST_P(ChangeKill, LeavesTheOldOrTheNewHostAfterTheNextStart) {
    const ChangeKind kind = GetParam();
    const Json initial = root().state();
    const Json before = Projection(kind, initial);

    const auto started = Clock::now();
    ASSERT_EQ(RunChild(std::chrono::seconds(60)), 0);
    const auto duration = Clock::now() - started;
    const Json after = Projection(kind, root().state());
    // The agents run before and after their restart; only a mix stops them.
    if (kind != ChangeKind::AgentsRestart) {
        ASSERT_NE(before, after) << "the change changed nothing";
    }
    ASSERT_FALSE(root().state().contains("pendingChange"));

    std::mt19937 random(20 + static_cast<int>(kind));
    // Across the whole change and a little past it, so that some runs end.
    std::uniform_int_distribution<long> at(
        0, std::chrono::duration_cast<std::chrono::microseconds>(duration).count() * 5 / 4);
    int old = 0, whole = 0;
    for (int i = 0; i < kKills; ++i) {
        Sim::Save(initial);
        RunChild(std::chrono::microseconds(at(random)));
        Tesk::RecoverUnfinishedChange(HostCtl::TheBackend(), Tesk::ChangeClockNow());
        const Json state = root().state();
        const Json now = Projection(kind, state);
        EXPECT_FALSE(state.contains("pendingChange"));
        if (now == before)
            ++old;
        else if (now == after)
            ++whole;
        else
            ADD_FAILURE() << "kill " << i << " left a mix:\n" << now.dump(1);
    }
    std::cout << old << " old, " << whole << " new of " << kKills << " kills\n";
}

INSTANTIATE_TEST_SUITE_P(, ChangeKill,
                         ::testing::Values(ChangeKind::ManagementNetwork,
                                           ChangeKind::FactoryNetworkRestore,
                                           ChangeKind::StandardSwitchRestore,
                                           ChangeKind::AgentsRestart),
                         [](const auto& info) {
                             std::string name = HostCtl::Changes::ChangeKindName(info.param);
                             std::erase(name, ' ');
                             return name;
                         });

}  // namespace
}  // namespace TeskTest
