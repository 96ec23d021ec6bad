// Making and driving a simulated host root.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace Sim {

// The profile's state as the root was made, relative to the root: what the
// factory reset restores.
inline constexpr const char kFactoryStatePath[] = "var/lib/simhost/factory.json";

// The seven log files of a host, in the log viewer's order.
const std::vector<std::string>& LogFiles();

// Makes a host root in dir from the named profile: the state file, the login
// marker, the support file, the log files, /etc/hosts, the PAM set-up and the
// tool links. Throws std::runtime_error (unknown profile, unwritable dir).
void InitRoot(const std::string& dir, const std::string& profile = "default");

// The environment that makes PAM in the console go through pam_wrapper and the
// root's own user database: LD_PRELOAD, PAM_WRAPPER, PAM_WRAPPER_SERVICE_DIR and
// the switches that turn off deep binding (for sanitizer builds).
std::vector<std::pair<std::string, std::string>> PamEnvironment(const std::string& root);

// A crypt(3) hash (yescrypt) of password, as the root's PAM module keeps it;
// the empty password gives the empty text (an account without a password).
// Throws std::runtime_error when libcrypt fails.
std::string HashPassword(const std::string& password);

// The demo login of a root made from the default profile ("root", its password).
std::pair<std::string, std::string> DemoLogin();

// Puts a card carrying userId into the first slot, or takes every card out
// (userId empty), then sends SIGUSR1 to the consoles running on the root
// (Tools::RunningConsoles). Returns false with a message when there was none
// to tell.
bool ChangeCard(const std::string& root, const std::string& userId, std::string& message);

// Where the simulated host's power stands ("power.state").
enum class PowerState { On, Off, Restarting };
PowerState ReadPowerState(const std::string& root);

// A host that is off or restarting boots, as its init would: the power state
// is on again and "power.boots" counts, the pending IPv6 setting takes
// effect, enabled services and the management agents run, virtual machines
// that start with the host run. False (and nothing changed) for a host that
// is on.
bool BootHost(const std::string& root);

// The folder holding tesk-sim, where tesk is built or installed beside it.
std::string OwnDirectory();

}  // namespace Sim
