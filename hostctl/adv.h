// Advanced options ("/UserVars/TeskTimeOut") and user advanced options.
// Interfaces only; a host backend (hostctl/backend.h) hands out the objects.
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

class AdvancedOption {
public:
    virtual ~AdvancedOption() = default;
    // The option, or none when the host has no option of that name.
    // Throws HostCtl::Lib::HostCtlException when the host cannot be asked.
    virtual std::optional<OptionValue> GetOption(const std::string& name) const = 0;
    // Stores an integer option (created when missing).
    virtual void SetIntOption(const std::string& name, std::int64_t value) const = 0;
};

class UserAdvancedOption {
public:
    virtual ~UserAdvancedOption() = default;
    // Whether the user advanced option exists ("PXEBootEnabled").
    virtual bool HasUserOption(const std::string& name) const = 0;
};

}  // namespace HostCtl::Adv
