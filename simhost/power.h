// The simulated host's power: its virtual machines' power-off tools and the
// host's power commands.
#pragma once

#include "hostctl/power.h"

namespace ZrkCtl::Power {

class PowerControlImpl : public HostCtl::Power::PowerControl {
public:
    void StopVirtualMachines(const std::string& user, bool graceful) const override;
    bool PowerOffAllVirtualMachines() const override;
    bool PowerOffHost() const override;
    bool RestartHost() const override;
    bool ForceRestartHost() const override;
};

}  // namespace ZrkCtl::Power
