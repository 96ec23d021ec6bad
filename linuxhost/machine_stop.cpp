#include "linuxhost/machine_stop.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "linuxhost/options.h"
#include "platform/syslog.h"
#include "platform/waiting.h"

namespace LinuxHost {
namespace {

constexpr std::chrono::milliseconds kPoll{200};
constexpr long kDefaultLimitSeconds = 60;

bool Contains(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// Waits until none of asked runs or the limit passes; what still runs.
std::vector<std::string> WaitForShutdown(Hypervisor& hypervisor,
                                         const std::vector<std::string>& asked,
                                         std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    for (;;) {
        std::vector<std::string> left;
        for (const auto& name : hypervisor.Running())
            if (Contains(asked, name)) left.push_back(name);
        if (left.empty() || std::chrono::steady_clock::now() >= end ||
            Tesk::Platform::QuitRequested())
            return left;
        std::this_thread::sleep_for(kPoll);
    }
}

}  // namespace

bool StopAllMachines(Hypervisor& hypervisor, bool graceful, std::chrono::milliseconds limit) {
    const std::vector<std::string> running = hypervisor.Running();
    if (running.empty()) return true;
    std::vector<std::string> forced = running;
    if (graceful) {
        std::vector<std::string> asked;
        for (const auto& name : running)
            if (hypervisor.Shutdown(name)) asked.push_back(name);
        const std::vector<std::string> left = WaitForShutdown(hypervisor, asked, limit);
        forced.clear();
        for (const auto& name : running) {
            if (!Contains(asked, name) || Contains(left, name))
                forced.push_back(name);
            else
                Tesk::Platform::Log(LOG_INFO, "Virtual machine %s shut down", name.c_str());
        }
        if (Tesk::Platform::QuitRequested()) return false;
    }
    bool allOff = true;
    for (const auto& name : forced) {
        if (hypervisor.Destroy(name)) {
            Tesk::Platform::Log(LOG_WARNING, "Virtual machine %s powered off by force",
                                name.c_str());
        } else {
            allOff = false;
        }
    }
    return allOff;
}

std::chrono::milliseconds MachineShutdownLimit() {
    const std::string text = Options::Text("machines.shutdown_seconds").value_or("");
    char* end = nullptr;
    const long seconds = std::strtol(text.c_str(), &end, 10);
    if (end == text.c_str() || *end != '\0' || seconds < 0) {
        Tesk::Platform::Log(LOG_WARNING, "machines.shutdown_seconds=%s is not a number of seconds",
                            text.c_str());
        return std::chrono::seconds(kDefaultLimitSeconds);
    }
    return std::chrono::seconds(seconds);
}

}  // namespace LinuxHost
