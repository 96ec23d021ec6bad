// The simulated host's lockdown mode, through its management tool.
#pragma once

#include "hostctl/lockdown.h"

namespace ZrkCtl::Lockdown {

class LockdownModeImpl : public HostCtl::Lockdown::LockdownMode {
public:
    bool IsEnabled() const override;
    bool IsPossible() const override;
    void SetEnabled(bool enabled) const override;
};

}  // namespace ZrkCtl::Lockdown
