// The host-control library's one exception type.
#pragma once

#include <stdexcept>
#include <string>

namespace HostCtl::Lib {

class HostCtlException : public std::runtime_error {
public:
    explicit HostCtlException(const std::string& message) : std::runtime_error(message) {}
    // The readable text the screens log in place of "%s".
    const char* GetMessage() const noexcept { return what(); }
};

}  // namespace HostCtl::Lib
