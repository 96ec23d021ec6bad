// Stopping the virtual machines before the host goes down, against machines
// that shut down, ignore the request or refuse it.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "linuxhost/machine_stop.h"

namespace {

enum class Guest { Obeys, Ignores, Refuses, CannotBeDestroyed };

class FakeHypervisor : public LinuxHost::Hypervisor {
public:
    explicit FakeHypervisor(std::map<std::string, Guest> machines)
        : machines_(std::move(machines)) {}
    std::vector<std::string> Running() override {
        std::vector<std::string> names;
        for (const auto& [name, guest] : machines_) names.push_back(name);
        return names;
    }
    bool Shutdown(const std::string& name) override {
        calls.push_back("shutdown " + name);
        const Guest guest = machines_.at(name);
        if (guest == Guest::Obeys) machines_.erase(name);
        return guest != Guest::Refuses;
    }
    bool Destroy(const std::string& name) override {
        calls.push_back("destroy " + name);
        if (machines_.at(name) == Guest::CannotBeDestroyed) return false;
        machines_.erase(name);
        return true;
    }
    std::vector<std::string> calls;

private:
    std::map<std::string, Guest> machines_;
};

TEST(MachineStop, GracefulFirstThenByForcePastTheLimit) {
    struct Case {
        const char* name;
        std::map<std::string, Guest> machines;
        bool graceful;
        std::vector<std::string> calls;
        bool allOff;
    };
    const Case cases[] = {
        {"nothing runs", {}, true, {}, true},
        {"both obey",
         {{"a", Guest::Obeys}, {"b", Guest::Obeys}},
         true,
         {"shutdown a", "shutdown b"},
         true},
        {"one ignores the request",
         {{"a", Guest::Obeys}, {"b", Guest::Ignores}},
         true,
         {"shutdown a", "shutdown b", "destroy b"},
         true},
        {"one refuses it", {{"a", Guest::Refuses}}, true, {"shutdown a", "destroy a"}, true},
        {"forced",
         {{"a", Guest::Obeys}, {"b", Guest::Ignores}},
         false,
         {"destroy a", "destroy b"},
         true},
        {"one survives", {{"a", Guest::CannotBeDestroyed}}, false, {"destroy a"}, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        FakeHypervisor hypervisor(c.machines);
        // A machine that ignores the request holds a graceful stop to its
        // limit; otherwise the wait ends once the asked machines are off,
        // long before a limit this far away (whatever the machine's load).
        const bool ignored = std::any_of(c.machines.begin(), c.machines.end(),
                                         [](const auto& m) { return m.second == Guest::Ignores; });
        const std::chrono::milliseconds limit =
            ignored ? std::chrono::milliseconds(300) : std::chrono::seconds(60);
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(LinuxHost::StopAllMachines(hypervisor, c.graceful, limit), c.allOff);
        EXPECT_EQ(hypervisor.calls, c.calls);
        const auto waited = std::chrono::steady_clock::now() - start;
        if (c.graceful && ignored) {
            EXPECT_GE(waited, limit);
        }
        EXPECT_LT(waited, std::chrono::seconds(30));
    }
}

}  // namespace
