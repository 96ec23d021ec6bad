// The simulated resolver.
#include "simhost/resolver.h"

#include <poll.h>

#include <chrono>

#include "hostctl/exception.h"
#include "platform/waiting.h"
#include "simhost/outside_network.h"
#include "simhost/state_values.h"

namespace ZrkCtl::Network {
namespace {

constexpr char kFault[] = "resolver.resolve";

// Waits up to ms milliseconds; false when the console is to end meanwhile.
bool Delay(std::int64_t ms) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    for (;;) {
        // Rounded up, so the wait never ends before its time.
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now())
                .count();
        if (left <= 0) return true;
        if (Tesk::Platform::QuitRequested()) return false;
        pollfd quit{Tesk::Platform::QuitDescriptor(), POLLIN, 0};
        ::poll(quit.fd >= 0 ? &quit : nullptr, quit.fd >= 0 ? 1 : 0,
               static_cast<int>(std::min<std::int64_t>(left, 100)));
    }
}

class SimulatedResolver : public HostCtl::Network::Resolver {
public:
    explicit SimulatedResolver(std::string netStack) : netStack_(std::move(netStack)) {}

    bool Resolve(const std::string& name) const override {
        auto state = ZrkCtl::Sim::Snapshot();
        if (const Json* fault = ZrkCtl::Sim::Member(ZrkCtl::Sim::Object(*state, "faults"), kFault);
            fault && fault->is_object() && fault->contains("delayMs")) {
            if (!Delay(ZrkCtl::Sim::Integer<std::int64_t>(*fault, "delayMs", 0)))
                throw HostCtl::Lib::HostCtlException("Resolution interrupted");
            state = ZrkCtl::Sim::Snapshot();  // the network may have changed meanwhile
        } else {
            ZrkCtl::Sim::SnapshotFor(kFault);
        }
        return Outside::Resolves(*state, name);
    }

private:
    using Json = ZrkCtl::Sim::Json;
    std::string netStack_;
};

}  // namespace

std::unique_ptr<HostCtl::Network::Resolver> MakeResolver(const std::string& netStack) {
    return std::make_unique<SimulatedResolver>(netStack);
}

}  // namespace ZrkCtl::Network
