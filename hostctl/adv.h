// Advanced options ("/UserVars/TeskTimeOut") and user advanced options.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace HostCtl::Adv {

struct OptionValue {
    enum class Type { Integer, String } type = Type::Integer;
    std::int64_t intValue = 0;
    std::string stringValue;
};

}  // namespace HostCtl::Adv

namespace ZrkCtl::Adv {

class AdvancedOptionImpl {
public:
    // The option, or none when the host has no option of that name.
    // Throws HostCtl::Lib::HostCtlException when the host cannot be asked.
    std::optional<HostCtl::Adv::OptionValue> GetOption(const std::string& name) const;
    // Stores an integer option (created when missing).
    void SetIntOption(const std::string& name, std::int64_t value) const;
};

class UserAdvancedOptionImpl {
public:
    // Whether the user advanced option exists ("PXEBootEnabled").
    bool HasUserOption(const std::string& name) const;
};

}  // namespace ZrkCtl::Adv
