#include "linuxhost/adv.h"

#include <string_view>

#include "hostctl/exception.h"
#include "linuxhost/options.h"

namespace LinuxHost {
namespace {

// The console's option names and the integer options of the file that keep them.
struct AdvancedName {
    std::string_view name;
    const char* key;
};
constexpr AdvancedName kAdvancedNames[] = {
    {"/UserVars/TeskTimeOut", "console.idle-timeout"},
};

const char* KeyOf(std::string_view name) {
    for (const auto& known : kAdvancedNames)
        if (known.name == name) return known.key;
    return nullptr;
}

}  // namespace

std::optional<HostCtl::Adv::OptionValue> AdvancedOptionImpl::GetOption(
    const std::string& name) const {
    const char* key = KeyOf(name);
    if (key == nullptr) return std::nullopt;
    // The file's value has been checked: a whole number.
    HostCtl::Adv::OptionValue value;
    value.intValue = std::stoll(Options::Text(key).value_or("0"));
    return value;
}

void AdvancedOptionImpl::SetIntOption(const std::string& name, std::int64_t value) const {
    const char* key = KeyOf(name);
    if (key == nullptr)
        throw HostCtl::Lib::HostCtlException("The option " + name + " is not kept on this host");
    if (!Options::Set(key, std::to_string(value)))
        throw HostCtl::Lib::HostCtlException("The option " + name + " could not be set to " +
                                             std::to_string(value));
}

}  // namespace LinuxHost
