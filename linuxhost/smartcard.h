// Smart cards on a Linux host: read through pcsc-lite's daemon, so the card
// path of the login is offered only where pcscd listens on its socket.
#pragma once

#include <string>

namespace LinuxHost {

inline constexpr const char kPcscdSocket[] = "/run/pcscd/pcscd.comm";

// Why the card path of the login is not offered; empty when it is.
std::string WhySmartCardLoginNotOffered();

}  // namespace LinuxHost
