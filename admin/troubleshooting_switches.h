// Switching the host's local shell and its SSH server on and off, as the
// troubleshooting window does: through the management tool as the given user,
// with the service's init script as the fallback for start and stop, and for
// SSH the firewall ruleset opened when it is switched on. The caller's flag
// is inverted whatever the tools answered.
#pragma once

#include <string>

namespace Tesk {

// Whether "sh /etc/init.d/<service> status" answers 0.
bool ServiceRunning(const char* initScript);

// Each inverts *enabled and writes the user's log line.
void SwitchShell(const std::string& user, bool* enabled);
void SwitchSsh(const std::string& user, bool* enabled);

}  // namespace Tesk
