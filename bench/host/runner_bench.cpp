// The cost of running a host tool: a trivial child without and with a time
// limit (the limit must not add a polling delay), and a management-tool query
// against the simulated tool.
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "host/runner.h"
#include "platform/host_root_platform.h"
#include "platform/hostroot.h"

namespace {

// A root made once for the process, removed at exit.
class BenchRoot {
public:
    BenchRoot() {
        char pattern[] = "/tmp/tesk-host-bench.XXXXXX";
        if (!::mkdtemp(pattern)) std::abort();
        path_ = pattern;
        std::string command = std::string(TESK_SIM_BINARY) + " init " + path_ + " >/dev/null";
        if (std::system(command.c_str()) != 0) std::abort();
        std::filesystem::create_symlink("/bin/true", path_ + "/bin/true");
        Tesk::Platform::SetHostRootForTesting(path_);
        // The runner's log lines go to the root's own log, not the machine's.
        Tesk::Platform::InstallHostPlatform(std::make_unique<Tesk::Platform::HostRootPlatform>());
    }
    ~BenchRoot() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }

private:
    std::string path_;
};

BenchRoot& Root() {
    static BenchRoot root;
    return root;
}

void RunTrivialChild(benchmark::State& state) {
    Root();
    const int limit = static_cast<int>(state.range(0));
    const char* argv[] = {"true", nullptr};
    char out[Tesk::kCaptureBufferSize];
    for (auto _ : state) {
        int length = Tesk::kCaptureCapacity;
        int rc =
            Tesk::RunCommand("/bin/true", argv, out, &length, nullptr, nullptr, nullptr, 0, limit);
        if (rc != 0) state.SkipWithError("child failed");
        benchmark::DoNotOptimize(length);
    }
}
BENCHMARK(RunTrivialChild)->Arg(0)->Arg(Tesk::kQueryTimeLimit)->Unit(benchmark::kMicrosecond);

void RuxCmdGetSimulated(benchmark::State& state) {
    Root();
    for (auto _ : state)
        benchmark::DoNotOptimize(Tesk::RuxCmdGet("ruxsvc/auth/lockdown_is_possible"));
}
BENCHMARK(RuxCmdGetSimulated)->Unit(benchmark::kMillisecond);

}  // namespace
