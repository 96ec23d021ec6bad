// The console's first welcome frame against a plain dialog box of the same
// size and text: both programs are started the same way, by turns, in the same
// pseudo-terminal harness and run, so the console's start-up is measured
// against a known yardstick on whatever load the machine has.
//
// FirstFrameVsDialog: for each program, the wall time from starting it to its
// settled first frame (the whole screen equal to the frame an untimed start
// settled on) and the CPU time the process had used by then (the sum of
// /proc/<pid>/task/*/schedstat's first field, time on a CPU in ns). Medians
// over the pairs (the benchmark's argument). TESK_BENCH_CONSOLE and
// TESK_BENCH_HOST_ROOT point it at another console and host root.
#include <dirent.h>
#include <sys/types.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>

#include "tests/harness/console_session.h"

namespace {

using namespace TeskTest;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr std::string_view kWelcomeFooter = "<F2> Customize System/View Logs";
constexpr std::string_view kManagementHeading = "To manage this host, go to:";
constexpr const char kDialog[] = "/usr/bin/dialog";

SimRoot& Root() {
    static SimRoot root;
    return root;
}

// Both programs see the same environment: the root, TERM=linux, 80 x 25, no
// PAM set-up (the welcome screen asks nothing of PAM). In the lab the host
// root can be another one (TESK_BENCH_HOST_ROOT, "/" for the host itself),
// with the backend and bus the lab gives.
SessionOptions Options(std::string program, std::vector<std::string> args) {
    SessionOptions options;
    options.program = std::move(program);
    options.args = std::move(args);
    options.pamWrapper = false;
    if (const char* root = std::getenv("TESK_BENCH_HOST_ROOT"); root && *root)
        options.env.emplace_back("TESK_ROOT", root);
    // In the lab: the host's own backend and the lab's system bus.
    for (const char* name : {"TESK_BACKEND", "DBUS_SYSTEM_BUS_ADDRESS"})
        if (const char* value = std::getenv(name); value && *value)
            options.env.emplace_back(name, value);
    return options;
}

// The console measured: the one of this build, or in the lab another build
// (TESK_BENCH_CONSOLE, such as one on the host's own backend).
std::string Console() {
    const char* console = std::getenv("TESK_BENCH_CONSOLE");
    return console && *console ? console : TeskBinary();
}

// Time on a CPU so far, summed over the process's threads, in ms.
double CpuMilliseconds(pid_t pid) {
    const std::string tasks = "/proc/" + std::to_string(pid) + "/task";
    std::unique_ptr<DIR, int (*)(DIR*)> dir(::opendir(tasks.c_str()), &::closedir);
    if (!dir) return -1;
    long long total = 0;
    while (const dirent* entry = ::readdir(dir.get())) {
        if (entry->d_name[0] == '.') continue;
        std::ifstream schedstat(tasks + "/" + entry->d_name + "/schedstat");
        long long onCpu = 0;
        if (schedstat >> onCpu) total += onCpu;
    }
    return static_cast<double>(total) / 1e6;
}

// The screen a program settles on once shown; empty when it never showed.
std::string SettledFrame(const SessionOptions& options,
                         const std::function<bool(const Screen&)>& shown, std::string_view what) {
    ConsoleSession console(Root(), options);
    const Screen& screen = console.screen();
    if (!console.waitFor([&] { return shown(screen); }, what)) return {};
    if (!console.waitForQuiet(300ms)) return {};
    return console.text();
}

// The welcome screen's words, row by row without the frame lines and the
// blanks around them: the dialog box's message.
std::string MessageFrom(const std::string& frame) {
    std::istringstream rows(frame);
    std::string message;
    for (std::string row; std::getline(rows, row);) {
        std::string words;
        for (char c : row)
            if (static_cast<unsigned char>(c) < 0x80) words += c;
        const size_t begin = words.find_first_not_of(' ');
        if (begin == std::string::npos) continue;
        const size_t end = words.find_last_not_of(' ');
        message += words.substr(begin, end - begin + 1) + "\n";
    }
    return message;
}

struct FirstFrame {
    double wallMs = 0;
    double cpuMs = 0;
};

// Starts the program and waits for its settled frame; none when it differs.
std::optional<FirstFrame> TimeFirstFrame(const SessionOptions& options, const std::string& frame) {
    const auto start = Clock::now();
    ConsoleSession console(Root(), options);
    const Screen& screen = console.screen();
    if (!console.waitFor([&] { return screen.text() == frame; }, "the settled first frame"))
        return std::nullopt;
    FirstFrame result;
    result.wallMs = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    // Whatever the frame set off has ended: the start-up's CPU time is all in.
    console.waitForQuiet(100ms);
    result.cpuMs = CpuMilliseconds(console.pid());
    return result;
}

double Median(std::vector<double> samples) {
    if (samples.empty()) return 0;
    std::sort(samples.begin(), samples.end());
    const size_t n = samples.size();
    return n % 2 ? samples[n / 2] : (samples[n / 2 - 1] + samples[n / 2]) / 2;
}

void FirstFrameVsDialog(benchmark::State& state) {
    const SessionOptions tesk = Options(Console(), {});
    const std::string teskFrame = SettledFrame(
        tesk,
        [](const Screen& s) {
            return s.contains(kWelcomeFooter) && s.contains(kManagementHeading) &&
                   s.contains("https://");
        },
        "the welcome screen with its footer and management addresses");
    if (teskFrame.empty()) {
        state.SkipWithError("the console never showed a complete welcome screen");
        return;
    }
    const std::string message = MessageFrom(teskFrame);
    const SessionOptions dialog =
        Options(kDialog, {"--cr-wrap", "--no-collapse", "--msgbox", message, "25", "80"});
    const std::string firstLine = message.substr(0, message.find('\n'));
    const std::string dialogFrame = SettledFrame(
        dialog, [&](const Screen& s) { return s.contains("OK") && s.contains(firstLine); },
        "the dialog box with its message and button");
    if (dialogFrame.empty()) {
        state.SkipWithError("dialog never showed its box (is it installed?)");
        return;
    }

    std::vector<double> teskWall, teskCpu, dialogWall, dialogCpu;
    for (auto _ : state) {
        for (int pair = 0; pair < state.range(0); ++pair) {
            // By turns, each first in every other pair.
            for (int turn = 0; turn < 2; ++turn) {
                const bool teskNow = (pair + turn) % 2 == 0;
                auto frame =
                    TimeFirstFrame(teskNow ? tesk : dialog, teskNow ? teskFrame : dialogFrame);
                if (!frame) {
                    state.SkipWithError(teskNow ? "the console's first frame differed"
                                                : "dialog's first frame differed");
                    return;
                }
                (teskNow ? teskWall : dialogWall).push_back(frame->wallMs);
                (teskNow ? teskCpu : dialogCpu).push_back(frame->cpuMs);
            }
        }
    }
    state.counters["tesk_ms"] = Median(teskWall);
    state.counters["dialog_ms"] = Median(dialogWall);
    state.counters["tesk_cpu_ms"] = Median(teskCpu);
    state.counters["dialog_cpu_ms"] = Median(dialogCpu);
    state.counters["pairs"] = static_cast<double>(teskWall.size());
}
BENCHMARK(FirstFrameVsDialog)->Arg(15)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
