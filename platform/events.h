// Posting an administrative event: a syslog line, an audit record, an
// observation event, always in that order and each independent of the others.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace Tesk {

struct AuditRecord {
    std::string event;  // "tesk.login"
    std::string user;
    int outcome = 1;                                        // 1 success, 0 failure
    std::vector<std::pair<std::string, std::string>> data;  // {"reason", "Invalid login"}
};

// Logs "Initializing noxuser library", calls NoxUserLib_Init and, on a non-zero
// result, logs "Unable to initialize noxuser library from TESK. Error code: %d".
// Returns that result.
int InitNoxUserLib();

// 1. syslog(priority, "%s", text)   (priority may carry LOG_AUTH)
// 2. the audit record, when there is one (application "tesk")
// 3. the observation event noxFormat with its arguments, when noxFormat is not
//    null and the event library could be initialised.
void PostEvent(int priority, const std::string& text, const AuditRecord* audit,
               const char* noxFormat, ...) __attribute__((format(printf, 4, 5)));

}  // namespace Tesk
