// The console's two PAM exchanges for the service "tesk": the login check
// (authentication and account check) and the password change.
#pragma once

#include <string>

namespace Tesk {

// Authenticates user with password, then checks the account. Returns the PAM
// status of the last step (0 on success, 12 when a new password is required).
// The conversation answers exactly one hidden prompt per call with the
// password; anything else fails. No credentials are set. On a simulated host
// root PAM must go through pam_wrapper to the root's own users; without it the
// login is refused (PAM_SYSTEM_ERR, logged) rather than tried on the machine's
// accounts. libpam is loaded at the first exchange (admin/pam_library.h); when
// it cannot be loaded the exchange fails the same way (PAM_SYSTEM_ERR, logged).
int PamLoginCheck(const std::string& user, const std::string& password);

// Changes user's password from oldPassword to newPassword: authenticates,
// checks the account (an expired one may go on), changes the password and
// refreshes the credentials. True when every step succeeded. The conversation
// answers the hidden prompts in order with the old password, then the new one
// twice (current, new, new again); anything else gets an empty answer. The
// same simulated-root rule and loading of libpam as PamLoginCheck apply.
bool PamChangePassword(const std::string& user, const std::string& oldPassword,
                       const std::string& newPassword);

// Overwrites a string's characters before it is released.
void Wipe(std::string& secret);

}  // namespace Tesk
