// From an address appearing on the lab host's management bridge to the real
// console's welcome screen showing it (run through scripts/lab.sh; elsewhere
// it skips with the reason). The bridge is made here, without files of ours,
// so networkd leaves it alone and the console describes it as the kernel has
// it; every iteration adds a new static address and times until the screen
// shows it, then takes it away again (not timed). The console hears of the
// address through netlink's events: nothing polls.

#include <chrono>
#include <cstdlib>
#include <string>

#include <benchmark/benchmark.h>

#include "tests/harness/console_session.h"
#include "tests/harness/lab_environment.h"

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

bool Shell(const std::string& command) {
    return std::system(command.c_str()) == 0;
}

void AddressToWelcome(benchmark::State& state) {
    if (!TeskTest::InLinuxLab()) {
        state.SkipWithError("runs in the lab (scripts/lab.sh)");
        return;
    }
    if (!Shell("ip link add br0 type bridge 2>/dev/null; ip link set br0 up")) {
        state.SkipWithError("cannot make the bridge br0 in the lab");
        return;
    }
    TeskTest::SessionOptions options;
    options.cols = 100;
    options.rows = 30;
    TeskTest::PassLabEnvironment(options);
    TeskTest::ConsoleSession console(options);
    if (!console.waitForText("<F2>", 30s)) {
        state.SkipWithError("the welcome screen did not come");
        return;
    }
    int round = 0;
    for (auto _ : state) {
        const std::string address = "192.168.77." + std::to_string(50 + round++ % 100);
        const std::string shown = "https://" + address + "/";
        const auto start = Clock::now();
        if (!Shell("ip addr add " + address + "/24 dev br0") || !console.waitForText(shown, 10s)) {
            state.SkipWithError(("the screen did not show " + address).c_str());
            break;
        }
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - start).count());
        if (!Shell("ip addr del " + address + "/24 dev br0") ||
            !console.waitForTextGone(shown, 10s)) {
            state.SkipWithError(("the screen kept " + address).c_str());
            break;
        }
    }
    Shell("ip link del br0");
}

BENCHMARK(AddressToWelcome)->UseManualTime()->Iterations(10)->Unit(benchmark::kMillisecond);

}  // namespace
