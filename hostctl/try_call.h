// One way for screens to call the host: run the call, and when the host
// fails (HostCtl::Lib::HostCtlException) log the failure with the screen's
// own line and answer "nothing" instead of throwing.
#pragma once

#include <optional>
#include <type_traits>
#include <utility>

#include "hostctl/exception.h"
#include "platform/syslog.h"

namespace Tesk {

// Runs call(). On a host failure logs failureFormat at error level, its "%s"
// replaced by the failure's text, and answers none (false for a call that
// returns nothing); otherwise the call's value (true).
template <typename Call>
auto TryHost(const char* failureFormat, Call&& call) {
    using Result = std::invoke_result_t<Call>;
    if constexpr (std::is_void_v<Result>) {
        try {
            std::forward<Call>(call)();
            return true;
        } catch (const HostCtl::Lib::HostCtlException& e) {
            Platform::Log(LOG_ERR, failureFormat, e.what());
            return false;
        }
    } else {
        try {
            return std::optional<Result>(std::forward<Call>(call)());
        } catch (const HostCtl::Lib::HostCtlException& e) {
            Platform::Log(LOG_ERR, failureFormat, e.what());
            return std::optional<Result>();
        }
    }
}

}  // namespace Tesk
