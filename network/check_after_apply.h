// The checks after the management network was written: link on the
// management interface, an address on it, the default gateway answering, each
// name server answering and the host name resolving. Each check is one line
// of a progress dialog and has its own time limit.
#pragma once

#include <optional>
#include <string>

#include "host/host_context.h"

namespace Tesk {

class Window;

// The time limits, in milliseconds.
inline constexpr int kLinkCheckMs = 3000;
inline constexpr int kStaticAddressCheckMs = 3000;
inline constexpr int kDhcpAddressCheckMs = 10000;
inline constexpr int kPingCheckMs = 5000;
inline constexpr int kResolveCheckMs = 5000;

// Runs the checks over opener in a progress dialog titled title, reading what
// to check from the host as it is now. The line of the first check that
// failed, none when all passed. With waitAtEnd the dialog ends with "Done."
// and waits for <Enter>; otherwise it closes by itself.
std::optional<std::string> RunChecksAfterApplying(Window* opener, const HostContext& host,
                                                  const std::string& title, bool waitAtEnd);

}  // namespace Tesk
