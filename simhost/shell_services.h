// The simulated host's local shell and SSH server: its management tool, the
// services' init scripts and its option tools.
#pragma once

#include "hostctl/shell_services.h"

namespace ZrkCtl::Services {

class ShellServicesImpl : public HostCtl::Services::ShellServices {
public:
    bool IsRunning(HostCtl::Services::Service service) const override;
    void Switch(HostCtl::Services::Service service, bool on,
                const std::string& user) const override;
    void RestartIfRunning(HostCtl::Services::Service service) const override;
    std::optional<long> GetTimeoutSeconds(HostCtl::Services::ShellTimeout timeout) const override;
    bool SetTimeoutSeconds(HostCtl::Services::ShellTimeout timeout,
                           unsigned long long seconds) const override;
};

}  // namespace ZrkCtl::Services
