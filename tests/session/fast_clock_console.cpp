// The console with its key reader's clock running fast: the first argument is
// how many seconds pass for the key reader in one real second. Idle timeouts
// of a minute then pass in seconds, through the same key reader and session
// code the console ships with.
#include <sys/time.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "app/startup.h"
#include "session/welcome_window.h"
#include "ui/keyreader.h"

namespace {

std::int64_t Micros(const timeval& t) {
    return std::int64_t{t.tv_sec} * 1000000 + t.tv_usec;
}

timeval FromMicros(std::int64_t us) {
    return timeval{static_cast<time_t>(us / 1000000), static_cast<suseconds_t>(us % 1000000)};
}

}  // namespace

int main(int argc, char** argv) {
    const std::int64_t scale = argc > 1 ? std::max(1L, std::strtol(argv[1], nullptr, 10)) : 60;
    timeval startTv{};
    ::gettimeofday(&startTv, nullptr);
    const std::int64_t start = Micros(startTv);

    Tesk::Hooks().now = [=] {
        timeval now{};
        ::gettimeofday(&now, nullptr);
        return FromMicros(start + (Micros(now) - start) * scale);
    };
    Tesk::Hooks().wait = [=](const timeval* limit) {
        if (!limit) return Tesk::WaitForInput(nullptr);
        // Round up, so that the wait never ends before the fast clock's deadline.
        timeval real = FromMicros((Micros(*limit) + scale - 1) / scale + 1000);
        return Tesk::WaitForInput(&real);
    };

    // The console's own argument (the virtual terminal) is not used here.
    char* args[] = {argv[0], nullptr};
    return Tesk::RunConsole(1, args, [](const Tesk::StartFacts& facts) {
        return std::make_unique<Tesk::WelcomeWindow>(HostCtl::TheBackend(), facts.localConsole);
    });
}
