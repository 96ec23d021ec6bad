// Audit records: one per administrative action.
#pragma once

#include <string>

// event ("tesk.login"), user, application ("tesk"), outcome (1 success,
// 0 failure), then key/value C strings closed by a null pointer.
// Each record is one JSON line, handed to the installed platform hooks: the
// machine's put it in syslog (authpriv), a simulated root's in
// <root>/var/log/audit.log.
void BrlAudit_VLog(const char* event, const char* user, const char* application, int outcome, ...)
    __attribute__((sentinel));

namespace Tesk::Platform {
// The time of an audit record (and of an event line in a simulated root's
// noxd.log), in UTC: "2026-11-21T05:02:18Z".
std::string UtcStamp();
}  // namespace Tesk::Platform
