// The installed platform hooks, and the machine's own where none are.
#include "platform/host_platform.h"

#include <atomic>
#include <mutex>
#include <vector>

namespace Tesk::Platform {
namespace {

std::atomic<const HostPlatform*> g_installed{nullptr};

// Every platform ever installed, never destroyed: log lines may come from
// detached workers up to the very end of the process.
void Keep(std::unique_ptr<HostPlatform> platform) {
    static std::mutex lock;
    static auto* kept = new std::vector<std::unique_ptr<HostPlatform>>;
    std::lock_guard<std::mutex> hold(lock);
    kept->push_back(std::move(platform));
}

}  // namespace

bool HostPlatform::PamReachesHostUsers() const {
    return true;
}

const HostPlatform& TheHostPlatform() {
    static const HostPlatform* const machine = new HostPlatform;
    const HostPlatform* installed = g_installed.load(std::memory_order_acquire);
    return installed ? *installed : *machine;
}

void InstallHostPlatform(std::unique_ptr<HostPlatform> platform) {
    const HostPlatform* raw = platform.get();
    if (platform) Keep(std::move(platform));
    g_installed.store(raw, std::memory_order_release);
}

}  // namespace Tesk::Platform
