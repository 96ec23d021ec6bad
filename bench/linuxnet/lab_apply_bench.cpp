// The management network's apply on the lab's Linux host (run through
// scripts/lab.sh; elsewhere each benchmark skips with the reason), in this
// process against the lab's root, bus and network namespace:
//   YToVerdictWithDhcp: from the administrator's "Y" to the verdict of the
//     checks after applying, the bridge on the lab's DHCP lease; every
//     iteration changes the search domains (the lab's own first), which every
//     check passes.
//   YToStaticAddressOnTheLink: from "Y" to the kernel holding a new static
//     address on the bridge (two addresses by turns), the checks not waited for.

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include <benchmark/benchmark.h>

#include "bench/network/apply_rounds.h"
#include "hostctl/backend.h"
#include "linuxhost/backend.h"
#include "network/apply_changes.h"
#include "network/network_window.h"
#include "network/safe_apply.h"
#include "platform/hostroot.h"
#include "tests/support/curses_screen.h"
#include "ui/keyreader.h"
#include "ui/keys.h"
#include "ui/window.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

std::string Env(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

bool HasAddress(const std::string& address) {
    std::string out;
    if (FILE* pipe = ::popen("ip -o -4 addr show dev br0 2>/dev/null", "r")) {
        char buffer[4096];
        for (size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) out.append(buffer, n);
        ::pclose(pipe);
    }
    return out.find(" " + address + "/") != std::string::npos;
}

bool WaitForAddress(const std::string& address, std::chrono::seconds limit) {
    for (const auto end = Clock::now() + limit; Clock::now() < end;) {
        if (HasAddress(address)) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return false;
}

// The Linux backend on the lab's root, the host as installed (DHCP), with its
// lease; false (the state skipped) outside the lab.
bool SetUpLab(benchmark::State& state) {
    if (Env("TESK_BACKEND") != "linux" || Env("LAB_PEER_NETNS").empty()) {
        state.SkipWithError("runs in the lab (scripts/lab.sh)");
        return false;
    }
    const std::string to = Env("TESK_ROOT") + "/etc/systemd/network";
    for (const auto& file : fs::directory_iterator(TESK_LAB_INSTALLED_NETWORK))
        fs::copy_file(file.path(), to + "/" + file.path().filename().string(),
                      fs::copy_options::overwrite_existing);
    std::system("networkctl reload");
    if (!WaitForAddress("192.168.77.10", std::chrono::seconds(60))) {
        state.SkipWithError("the lab's DHCP lease did not come");
        return false;
    }
    Tesk::Platform::InstallHostPlatform(LinuxHost::MakeLinuxPlatform());
    HostCtl::SetBackend(LinuxHost::MakeLinuxBackend());
    TeskTest::OpenCursesScreen(25, 80);
    Tesk::SetCurrentWindow(nullptr);
    // The key loops of the checks poll: each wait lasts its limit and ends
    // without a key, as on a keyboard nobody touches.
    TeskBench::NobodyAtTheKeyboard();
    return true;
}

void TearDownLab() {
    Tesk::ResetHooks();
    Tesk::Platform::InstallHostPlatform(nullptr);
}

void YToVerdictWithDhcp(benchmark::State& state) {
    if (!SetUpLab(state)) return;
    TeskBench::TimeApplyRounds(
        state, [](int round) { return "lab.test, round" + std::to_string(round) + ".test"; });
    if (fs::exists(Env("TESK_ROOT") + "/var/lib/tesk/change-record"))
        state.SkipWithError("a check failed");
    TearDownLab();
}
BENCHMARK(YToVerdictWithDhcp)->Unit(benchmark::kMillisecond)->Iterations(5);

void YToStaticAddressOnTheLink(benchmark::State& state) {
    if (!SetUpLab(state)) return;
    const Tesk::HostContext host{HostCtl::TheBackend(), "root"};
    int round = 0;
    for (auto _ : state) {
        auto pending = Tesk::LoadPendingNetworkConfig(nullptr, host);
        if (!pending) {
            state.SkipWithError("the management network cannot be read");
            break;
        }
        const std::string address = "192.168.77." + std::to_string(50 + (++round % 2));
        pending->changed = true;
        pending->mode.SetUseDhcp(false);
        pending->address.SetUseDhcp(false, false);
        pending->address.SetIpv4Address(HostCtl::Network::Ipv4Address(address));
        pending->address.SetIpv4Netmask(HostCtl::Network::Ipv4Address("255.255.255.0"));
        pending->address.SetIpv4Gateway(HostCtl::Network::Ipv4Address("192.168.77.1"));
        const auto start = Clock::now();
        Tesk::ApplyNetworkChanges(nullptr, host, *pending, nullptr);
        if (!WaitForAddress(address, std::chrono::seconds(30))) {
            state.SkipWithError("the static address did not reach the link");
            break;
        }
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - start).count());
    }
    TearDownLab();
}
BENCHMARK(YToStaticAddressOnTheLink)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);

}  // namespace
