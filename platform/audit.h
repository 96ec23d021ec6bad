// Audit records: one per administrative action.
#pragma once

// event ("tesk.login"), user, application ("tesk"), outcome (1 success,
// 0 failure), then key/value C strings closed by a null pointer.
// Under a simulated root each record becomes one JSON line in
// <root>/var/log/audit.log; on a real root it goes to syslog (authpriv).
void BrlAudit_VLog(const char* event, const char* user, const char* application, int outcome, ...)
    __attribute__((sentinel));
