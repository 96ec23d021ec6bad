// The management agents as systemd units (the option "units.agents", a
// space-separated list): stopped last to first and started first to last,
// over the bus. Live cores are not offered here (backend_machine.cpp).
#include <sstream>
#include <string>
#include <vector>

#include "linuxhost/options.h"
#include "linuxhost/run_objects.h"
#include "linuxhost/systemd_units.h"
#include "platform/syslog.h"

namespace LinuxHost {
namespace {

std::vector<std::string> AgentUnits() {
    std::istringstream words(Options::Text("units.agents").value_or(""));
    std::vector<std::string> units;
    for (std::string unit; words >> unit;) units.push_back(unit);
    return units;
}

class ManagementAgents : public HostCtl::Agents::ManagementAgents {
public:
    // The agents read the host's configuration when they start; nothing
    // else holds a copy to refresh.
    void Refresh(const std::string&) const override {}

    void Stop() const override {
        const auto units = AgentUnits();
        Systemd systemd;
        for (auto unit = units.rbegin(); unit != units.rend(); ++unit)
            if (systemd.Stop(*unit))
                Tesk::Platform::Log(LOG_INFO, "Stopped management agent %s", unit->c_str());
    }

    void Start() const override {
        Systemd systemd;
        for (const auto& unit : AgentUnits())
            if (systemd.Start(unit))
                Tesk::Platform::Log(LOG_INFO, "Started management agent %s", unit.c_str());
    }

    bool CollectLiveCore() const override {
        Tesk::Platform::Log(LOG_ERR, "Collecting a live core is not offered on this host");
        return false;
    }
};

}  // namespace

std::unique_ptr<HostCtl::Agents::ManagementAgents> MakeManagementAgents() {
    return std::make_unique<ManagementAgents>();
}

}  // namespace LinuxHost
