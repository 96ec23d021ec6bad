// Linux-PAM, loaded when the first PAM exchange starts instead of with the
// program: libpam and the libraries it brings (libaudit, libcap-ng) cost every
// start of the console, and only a login or a password change needs them.
#pragma once

#include <security/pam_appl.h>

namespace Tesk {

// The PAM calls the console makes, named as PAM names them.
struct PamCalls {
    decltype(&::pam_start) pam_start;
    decltype(&::pam_end) pam_end;
    decltype(&::pam_authenticate) pam_authenticate;
    decltype(&::pam_acct_mgmt) pam_acct_mgmt;
    decltype(&::pam_chauthtok) pam_chauthtok;
    decltype(&::pam_setcred) pam_setcred;
};

// Loads libpam at the first call and resolves the calls through the process's
// global symbol lookup, so that a library preloaded ahead of libpam (the
// simulated host's pam_wrapper) answers them, as it would for a program linked
// with libpam. Null, with "Loading PAM failed: ..." logged, when libpam cannot
// be loaded or lacks a call; the next exchange tries again.
const PamCalls* LoadPam();

}  // namespace Tesk
