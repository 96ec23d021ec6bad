// How the Linux backend gives up on a call: the reason goes to the log and is
// thrown as HostCtl::Lib::HostCtlException, which the screens show as a host
// failure.
#pragma once

#include <string>

namespace LinuxHost {

[[noreturn]] void Fail(const std::string& text);

}  // namespace LinuxHost
