// The console's two PAM exchanges for the service "tesk": the login check
// (authentication and account check) and the password change.
#pragma once

#include <string>

namespace Tesk {

// Authenticates user with password, then checks the account. Returns the PAM
// status of the last step (0 on success, 12 when a new password is required).
// The conversation answers exactly one hidden prompt per call with the
// password; anything else fails. No credentials are set. When the installed
// platform hooks say PAM does not reach the host's users (a simulated host
// root without pam_wrapper) the login is refused (PAM_SYSTEM_ERR, logged)
// rather than tried on the machine's accounts.
int PamLoginCheck(const std::string& user, const std::string& password);

// Changes user's password from oldPassword to newPassword: authenticates,
// checks the account (an expired one may go on), changes the password and
// refreshes the credentials. True when every step succeeded. The conversation
// answers the hidden prompts in order with the old password, then the new one
// twice (current, new, new again); anything else gets an empty answer. It is
// refused in the same case as PamLoginCheck.
bool PamChangePassword(const std::string& user, const std::string& oldPassword,
                       const std::string& newPassword);

// Overwrites a string's characters before it is released.
void Wipe(std::string& secret);

}  // namespace Tesk
