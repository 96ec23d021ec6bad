// What the benchmarks from "Y" to the checks' verdict share, on any backend:
// the checks' dialogs run with a keyboard nobody touches, and each round
// applies a pending copy whose search domains differ from the last round's.
#pragma once

#include <sys/time.h>

#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>

#include <benchmark/benchmark.h>

#include "hostctl/backend.h"
#include "network/network_window.h"
#include "network/safe_apply.h"
#include "ui/keyreader.h"
#include "ui/keys.h"

namespace TeskBench {

// The key loops of the checks poll: each wait lasts its limit and ends
// without a key, as on a keyboard nobody touches.
inline void NobodyAtTheKeyboard() {
    Tesk::Hooks().wait = [](const timeval* limit) {
        if (!limit) throw std::runtime_error("a dialog waited for a key");
        std::this_thread::sleep_for(std::chrono::seconds(limit->tv_sec) +
                                    std::chrono::microseconds(limit->tv_usec));
        return static_cast<int>(Tesk::EventTimeout);
    };
}

// Times SafelyApplyNetworkChanges once per round; suffixes(round) gives the
// round's search domains.
inline void TimeApplyRounds(benchmark::State& state,
                            const std::function<std::string(int)>& suffixes) {
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
        pending->suffixText = suffixes(++round);
        state.ResumeTiming();
        Tesk::SafelyApplyNetworkChanges(nullptr, host, *pending, nullptr);
    }
}

}  // namespace TeskBench
