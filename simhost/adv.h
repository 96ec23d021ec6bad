// The simulated host's advanced options ("/advancedOptions") and user
// advanced options ("/userOptions").
#pragma once

#include "hostctl/adv.h"

namespace ZrkCtl::Adv {

class AdvancedOptionImpl : public HostCtl::Adv::AdvancedOption {
public:
    std::optional<HostCtl::Adv::OptionValue> GetOption(const std::string& name) const override;
    void SetIntOption(const std::string& name, std::int64_t value) const override;
};

class UserAdvancedOptionImpl : public HostCtl::Adv::UserAdvancedOption {
public:
    bool HasUserOption(const std::string& name) const override;
};

}  // namespace ZrkCtl::Adv
