#include "app/flags.h"

#include <limits>

#include "hostctl/backend.h"
#include "hostctl/exception.h"

namespace Tesk {

ProcessFlags& Flags() {
    static ProcessFlags flags;
    return flags;
}

int ReadIdleTimeout() {
    try {
        auto option =
            HostCtl::TheBackend().GetAdvancedOptions()->GetOption("/UserVars/TeskTimeOut");
        if (option && option->type == HostCtl::Adv::OptionValue::Type::Integer) {
            auto v = option->intValue;
            if (v < std::numeric_limits<int>::min()) return std::numeric_limits<int>::min();
            if (v > std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
            return static_cast<int>(v);
        }
    } catch (const HostCtl::Lib::HostCtlException&) {
    }
    return 600;
}

}  // namespace Tesk
