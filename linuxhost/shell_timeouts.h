// Where the host honours the shell's two time-outs: the idle time-out as
// TMOUT in a profile script every login shell reads, the availability as
// RuntimeMaxSec in a drop-in of the shell's and SSH's units (systemd stops
// each that long after it started). Files under the host root, written
// atomically; a time-out of 0 removes its file.
#pragma once

#include <optional>

#include "hostctl/shell_services.h"

namespace LinuxHost {

inline constexpr const char kIdleTimeoutFile[] = "/etc/profile.d/tesk-timeout.sh";
inline constexpr const char kAvailabilityDropIn[] = "tesk-availability.conf";

// The time-out in seconds as the files hold it (0 when there is none); none
// when a file cannot be read as ours (logged).
std::optional<long> ReadShellTimeout(HostCtl::Services::ShellTimeout timeout);
// Writes (or removes) the files; systemd is told to read the drop-ins again.
// False (logged) when a file could not be written; files written before stay.
bool WriteShellTimeout(HostCtl::Services::ShellTimeout timeout, unsigned long long seconds);

}  // namespace LinuxHost
