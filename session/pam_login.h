// The PAM login check of the login dialog.
#pragma once

#include <string>

namespace Tesk {

// Authenticates user with password for the PAM service "tesk", then checks the
// account. Returns the PAM status of the last step (0 on success). The
// conversation answers exactly one hidden prompt per call with the password;
// anything else fails. No credentials are set. On a simulated host root PAM
// must go through pam_wrapper to the root's own users; without it the login is
// refused (PAM_SYSTEM_ERR, logged) rather than tried on the machine's accounts.
int PamLoginCheck(const std::string& user, const std::string& password);

// Overwrites a string's characters before it is released.
void Wipe(std::string& secret);

}  // namespace Tesk
