// The simulated host's configuration: its backup script, its factory
// configuration tool and its command tool's list of custom extensions.
#pragma once

#include "hostctl/configuration.h"

namespace ZrkCtl::Configuration {

class HostConfigurationImpl : public HostCtl::Configuration::HostConfiguration {
public:
    bool Backup() const override;
    bool ResetToFactoryDefaults() const override;
    bool HasCustomExtensions() const override;
    bool RemoveCustomExtensions() const override;
};

}  // namespace ZrkCtl::Configuration
