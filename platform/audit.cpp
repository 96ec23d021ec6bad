#include "platform/audit.h"

#include <syslog.h>

#include <cstdarg>
#include <ctime>
#include <string>

#include <nlohmann/json.hpp>

#include "platform/host_platform.h"

std::string Tesk::Platform::UtcStamp() {
    char stamp[32] = "";
    std::time_t now = std::time(nullptr);
    struct tm tm {};
    ::gmtime_r(&now, &tm);
    std::strftime(stamp, sizeof stamp, "%Y-%m-%dT%H:%M:%SZ", &tm);
    return stamp;
}

void BrlAudit_VLog(const char* event, const char* user, const char* application, int outcome, ...) {
    nlohmann::ordered_json record;
    record["time"] = Tesk::Platform::UtcStamp();
    record["event"] = event ? event : "";
    record["user"] = user ? user : "";
    record["application"] = application ? application : "";
    record["outcome"] = outcome;
    nlohmann::ordered_json data = nlohmann::ordered_json::object();
    va_list args;
    va_start(args, outcome);
    while (const char* key = va_arg(args, const char*)) {
        const char* value = va_arg(args, const char*);
        data[key] = value ? value : "";
        if (!value) break;
    }
    va_end(args);
    record["data"] = data;
    std::string line = record.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);

    Tesk::Platform::TheHostPlatform().WriteAuditRecord(line);
}

// The machine keeps its audit records in its system log.
void Tesk::Platform::HostPlatform::WriteAuditRecord(const std::string& record) const {
    ::syslog(LOG_AUTHPRIV | LOG_INFO, "audit: %s", record.c_str());
}
