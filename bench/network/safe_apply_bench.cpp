// From the administrator's "Y" to the verdict of the checks after applying,
// on a healthy simulated host: the change recorded, written through the apply
// procedure, the host checked (link, address, gateway and name server pings,
// the host name's resolution through the simulated host tools) and the record
// dropped. Every iteration changes the search domains, which every check
// passes.

#include <string>

#include <benchmark/benchmark.h>

#include "bench/network/apply_rounds.h"
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
    TeskBench::NobodyAtTheKeyboard();
    TeskBench::TimeApplyRounds(
        state, [](int round) { return "lab.example round" + std::to_string(round) + ".example"; });
    if (root.stateValue("/pendingChange")) state.SkipWithError("a check failed");
    Tesk::ResetHooks();
    Tesk::Platform::SetHostRootForTesting("");
    Tesk::Platform::InstallHostPlatform(nullptr);
}
BENCHMARK(YToVerdict)->Unit(benchmark::kMillisecond)->Iterations(10);

}  // namespace
