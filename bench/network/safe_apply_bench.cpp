// From the administrator's "Y" to the verdict of the checks after applying,
// on a healthy simulated host: the change recorded, written through the apply
// procedure, the host checked (link, address, gateway and name server pings,
// the host name's resolution through the simulated host tools) and the record
// dropped. Every iteration changes the search domains, which every check
// passes.
#include <sys/time.h>

#include <chrono>
#include <string>
#include <thread>

#include <benchmark/benchmark.h>

#include "hostctl/backend.h"
#include "network/network_window.h"
#include "network/safe_apply.h"
#include "platform/hostroot.h"
#include "simhost/backend.h"
#include "simhost/platform_nodes.h"
#include "tests/harness/sim_root.h"
#include "tests/support/curses_screen.h"
#include "ui/keyreader.h"
#include "ui/keys.h"
#include "ui/window.h"

namespace {

void YToVerdict(benchmark::State& state) {
    TeskTest::SimRoot root("default");
    Tesk::Platform::SetHostRootForTesting(root.path());
    Tesk::Platform::InstallHostPlatform(ZrkCtl::MakeSimulatedPlatform());
    HostCtl::SetBackend(ZrkCtl::MakeSimulatedBackend());
    TeskTest::OpenCursesScreen(25, 80);
    Tesk::SetCurrentWindow(nullptr);
    // The key loops of the checks poll: each wait lasts its limit and ends
    // without a key, as on a keyboard nobody touches.
    Tesk::Hooks().wait = [](const timeval* limit) {
        if (!limit) throw std::runtime_error("a dialog waited for a key");
        std::this_thread::sleep_for(std::chrono::seconds(limit->tv_sec) +
                                    std::chrono::microseconds(limit->tv_usec));
        return static_cast<int>(Tesk::EventTimeout);
    };
    const Tesk::HostContext host{HostCtl::TheBackend(), "root"};
    int round = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto pending = Tesk::LoadPendingNetworkConfig(nullptr, host);
        if (!pending) {
            state.SkipWithError("the management network cannot be read");
            break;
        }
        pending->changed = true;
        pending->suffixText = "lab.example round" + std::to_string(++round) + ".example";
        state.ResumeTiming();
        Tesk::SafelyApplyNetworkChanges(nullptr, host, *pending, nullptr);
    }
    if (root.stateValue("/pendingChange")) state.SkipWithError("a check failed");
    Tesk::ResetHooks();
    Tesk::Platform::SetHostRootForTesting("");
    Tesk::Platform::InstallHostPlatform(nullptr);
}
BENCHMARK(YToVerdict)->Unit(benchmark::kMillisecond)->Iterations(10);

}  // namespace
