// The console's advanced options on a Linux host, kept in the backend's own
// option file (linuxhost/options.h) under names of its own: the idle
// time-out "/UserVars/TeskTimeOut" is "console.idle-timeout". A Linux host
// has no user advanced options.
#pragma once

#include "hostctl/adv.h"

namespace LinuxHost {

class AdvancedOptionImpl : public HostCtl::Adv::AdvancedOption {
public:
    // None for a name the backend does not keep.
    std::optional<HostCtl::Adv::OptionValue> GetOption(const std::string& name) const override;
    // Throws for a name the backend does not keep or a value it refuses, and
    // when the file cannot be written (nothing is changed then).
    void SetIntOption(const std::string& name, std::int64_t value) const override;
};

class UserAdvancedOptionImpl : public HostCtl::Adv::UserAdvancedOption {
public:
    bool HasUserOption(const std::string&) const override { return false; }
};

}  // namespace LinuxHost
