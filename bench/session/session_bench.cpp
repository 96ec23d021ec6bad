// How quickly the console answers the person at its keyboard, measured as that
// person sees it: the real console in a pseudo-terminal against a simulated
// host root, its screen read through the terminal emulator of the screen-test
// harness.
//
// - StartToWelcome: from starting the program to the first complete welcome
//   screen (compared with the whole screen of an earlier, settled start).
// - MenuKeyToFrame: from an arrow key in the customization menu to the right
//   pane showing the newly selected entry's heading.
// - IdleOnWelcome, IdleInMenu: context switches of every thread of the
//   console while it waits for a key; a console that sleeps in the kernel
//   shows none.
#include <dirent.h>
#include <sys/types.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <benchmark/benchmark.h>

#include "tests/harness/console_session.h"

namespace {

using namespace TeskTest;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr std::string_view kWelcomeFooter = "<F2> Customize System/View Logs";
constexpr std::string_view kManagementHeading = "To manage this host, go to:";
constexpr std::string_view kMenuTitle = "System Customization";
// F2 as a VT-style terminal sends it. The console in a pseudo-terminal treats
// itself as remote and does not know the bare console's own F1-F5 sequences,
// but it takes this form on every terminal type.
constexpr std::string_view kF2 = "\x1bOQ";
// The password of the default profile's root user.
constexpr std::string_view kPassword = "tesk-demo";

double Milliseconds(Clock::duration d) {
    return std::chrono::duration<double, std::milli>(d).count();
}

// One host root for the whole run. The console leaves its pid file behind
// when it is killed; the next start finds the process gone and goes on.
SimRoot& Root() {
    static SimRoot root;
    return root;
}

// Starts the console against the shared root; nullptr (and the benchmark
// skipped with the reason) when it cannot be started.
std::unique_ptr<ConsoleSession> Start(benchmark::State& state) {
    try {
        return std::make_unique<ConsoleSession>(Root());
    } catch (const std::exception& e) {
        state.SkipWithError(e.what());
        return nullptr;
    }
}

// The welcome screen once drawn and settled, learned from a first start that
// is not timed. Empty when the console never showed it.
const std::string& WelcomeFrame() {
    static const std::string frame = [] {
        ConsoleSession console(Root());
        const Screen& screen = console.screen();
        const bool shown = console.waitFor(
            [&] {
                return screen.contains(kWelcomeFooter) && screen.contains(kManagementHeading) &&
                       screen.contains("https://");
            },
            "the welcome screen with its footer and management addresses");
        if (!shown || !console.waitForQuiet(300ms)) return std::string();
        return console.text();
    }();
    return frame;
}

// The heading of the customization menu's right pane: the first row of the
// right half of the screen.
std::string PaneHeading(const Screen& screen) {
    std::string row = screen.row(1);
    const size_t left = static_cast<size_t>(screen.cols() / 2);
    if (row.size() <= left) return {};
    row.erase(0, left);
    const size_t begin = row.find_first_not_of(' ');
    return begin == std::string::npos ? std::string() : row.substr(begin);
}

// F2 and the default profile's root password. A window that takes the focus
// discards the keys typed ahead of it, so each step waits until the screen
// has settled before typing on.
bool LogIn(ConsoleSession& console) {
    if (!console.waitForText(kWelcomeFooter) || !console.waitForQuiet(200ms)) return false;
    console.key(kF2);
    if (!console.waitForText("Password:") || !console.waitForQuiet(200ms)) return false;
    console.key(Key::Down);
    console.type(kPassword);
    console.key(Key::Enter);
    return console.waitForText(kMenuTitle) && console.waitForQuiet(200ms);
}

// Walks the menu down from the top and returns the headings of the entries
// the selection reaches, in order. A Down that changes nothing within a
// second marks the bottom; the selection is left there. The menu stops at its
// ends; the bound only keeps a menu that wrapped around from walking forever.
std::vector<std::string> WalkMenu(ConsoleSession& console) {
    const Screen& screen = console.screen();
    std::vector<std::string> headings{PaneHeading(screen)};
    while (headings.size() < 64) {
        console.key(Key::Down);
        const auto bottomAfter = Clock::now() + Scaled(1s);
        console.waitFor(
            [&] { return PaneHeading(screen) != headings.back() || Clock::now() >= bottomAfter; },
            "the pane heading to change");
        console.waitForQuiet(100ms);
        std::string heading = PaneHeading(screen);
        if (heading == headings.back()) break;
        headings.push_back(std::move(heading));
    }
    return headings;
}

double Percentile(std::vector<double> samples, double fraction) {
    if (samples.empty()) return 0;
    std::sort(samples.begin(), samples.end());
    const auto index = static_cast<size_t>(fraction * static_cast<double>(samples.size() - 1));
    return samples[index];
}

void StartToWelcome(benchmark::State& state) {
    const std::string& frame = WelcomeFrame();
    if (frame.empty()) {
        state.SkipWithError("the console never showed a complete welcome screen");
        return;
    }
    for (auto _ : state) {
        const auto start = Clock::now();
        std::unique_ptr<ConsoleSession> console = Start(state);
        if (!console) break;
        const Screen& screen = console->screen();
        const bool shown =
            console->waitFor([&] { return screen.text() == frame; }, "the whole welcome screen");
        const auto elapsed = Clock::now() - start;
        if (!shown) {
            state.SkipWithError("the welcome screen was not drawn completely");
            break;
        }
        state.SetIterationTime(std::chrono::duration<double>(elapsed).count());
    }
}
BENCHMARK(StartToWelcome)
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(9)
    ->ReportAggregatesOnly(true)
    ->Unit(benchmark::kMillisecond);

void MenuKeyToFrame(benchmark::State& state) {
    std::unique_ptr<ConsoleSession> started = Start(state);
    if (!started) return;
    ConsoleSession& console = *started;
    if (!LogIn(console)) {
        state.SkipWithError("login into the customization menu failed");
        return;
    }
    const std::vector<std::string> headings = WalkMenu(console);
    if (headings.size() < 2) {
        state.SkipWithError("the menu has fewer than two entries to move between");
        return;
    }
    const Screen& screen = console.screen();
    // WalkMenu left the selection on the last entry; bounce between the ends.
    size_t at = headings.size() - 1;
    bool down = false;
    std::vector<double> samples;
    for (auto _ : state) {
        if (at == 0) down = true;
        if (at == headings.size() - 1) down = false;
        const size_t next = down ? at + 1 : at - 1;
        const auto start = Clock::now();
        console.key(down ? Key::Down : Key::Up);
        const bool drawn = console.waitFor([&] { return PaneHeading(screen) == headings[next]; },
                                           "the next entry's heading in the pane");
        const auto elapsed = Clock::now() - start;
        if (!drawn) {
            state.SkipWithError("the pane did not follow the selection");
            break;
        }
        state.SetIterationTime(std::chrono::duration<double>(elapsed).count());
        samples.push_back(Milliseconds(elapsed));
        at = next;
    }
    state.counters["entries"] = static_cast<double>(headings.size());
    state.counters["median_ms"] = Percentile(samples, 0.5);
    state.counters["p90_ms"] = Percentile(samples, 0.9);
    state.counters["max_ms"] = Percentile(samples, 1.0);
}
BENCHMARK(MenuKeyToFrame)->UseManualTime()->Iterations(40)->Unit(benchmark::kMillisecond);

// Scheduler statistics summed over every thread of a process.
struct SwitchCounts {
    long long voluntary = 0;    // the thread went to sleep (and so was woken)
    long long involuntary = 0;  // the thread was preempted
    long long timeslices = 0;   // times on a CPU (/proc/<pid>/task/<tid>/schedstat)
    int threads = 0;
};

SwitchCounts CountSwitches(pid_t pid) {
    SwitchCounts counts;
    const std::string tasks = "/proc/" + std::to_string(pid) + "/task";
    std::unique_ptr<DIR, int (*)(DIR*)> dir(::opendir(tasks.c_str()), &::closedir);
    if (!dir) return counts;
    while (const dirent* entry = ::readdir(dir.get())) {
        if (entry->d_name[0] == '.') continue;
        const std::string task = tasks + "/" + entry->d_name;
        std::ifstream status(task + "/status");
        for (std::string line; std::getline(status, line);) {
            std::istringstream fields(line);
            std::string name;
            long long value = 0;
            fields >> name >> value;
            if (name == "voluntary_ctxt_switches:") counts.voluntary += value;
            if (name == "nonvoluntary_ctxt_switches:") counts.involuntary += value;
        }
        std::ifstream schedstat(task + "/schedstat");
        long long onCpu = 0, waiting = 0, slices = 0;
        if (schedstat >> onCpu >> waiting >> slices) counts.timeslices += slices;
        ++counts.threads;
    }
    return counts;
}

// Leaves the console alone for the benchmark's argument in milliseconds and
// counts what its threads did meanwhile.
void MeasureIdle(benchmark::State& state, ConsoleSession& console) {
    const auto window = std::chrono::milliseconds(state.range(0));
    // Whatever the last screen change set off has ended before counting.
    if (!console.waitForQuiet(300ms)) {
        state.SkipWithError("the console did not settle");
        return;
    }
    SwitchCounts before, after;
    size_t written = 0;
    for (auto _ : state) {
        const size_t outputBefore = console.output().size();
        before = CountSwitches(console.pid());
        std::this_thread::sleep_for(window);
        after = CountSwitches(console.pid());
        written = console.output().size() - outputBefore;
    }
    if (after.threads == 0) {
        state.SkipWithError("the console's threads could not be read");
        return;
    }
    state.counters["voluntary"] = static_cast<double>(after.voluntary - before.voluntary);
    state.counters["involuntary"] = static_cast<double>(after.involuntary - before.involuntary);
    state.counters["timeslices"] = static_cast<double>(after.timeslices - before.timeslices);
    state.counters["threads"] = after.threads;
    state.counters["bytes_out"] = static_cast<double>(written);
}

void IdleOnWelcome(benchmark::State& state) {
    std::unique_ptr<ConsoleSession> started = Start(state);
    if (!started) return;
    ConsoleSession& console = *started;
    if (!console.waitForText(kWelcomeFooter)) {
        state.SkipWithError("the welcome screen was not drawn");
        return;
    }
    MeasureIdle(state, console);
}
BENCHMARK(IdleOnWelcome)->Arg(2000)->Iterations(1)->Unit(benchmark::kMillisecond);

void IdleInMenu(benchmark::State& state) {
    std::unique_ptr<ConsoleSession> started = Start(state);
    if (!started) return;
    ConsoleSession& console = *started;
    if (!LogIn(console)) {
        state.SkipWithError("login into the customization menu failed");
        return;
    }
    MeasureIdle(state, console);
}
BENCHMARK(IdleInMenu)->Arg(2000)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
