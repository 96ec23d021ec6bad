#include "platform/events.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include "platform/audit.h"
#include "platform/nox.h"
#include "platform/syslog.h"

namespace Tesk {

int InitNoxUserLib() {
    Platform::Log(LOG_INFO, "%s", "Initializing noxuser library");
    int rc = NoxUserLib_Init();
    if (rc != 0)
        Platform::Log(LOG_ERR, "Unable to initialize noxuser library from TESK. Error code: %d",
                      rc);
    return rc;
}

namespace {

// BrlAudit_VLog takes its key/value pairs as variadic C strings; pass up to
// eight pairs, which is more than any record carries.
void WriteAudit(const AuditRecord& a) {
    const char* kv[17] = {};
    size_t n = 0;
    for (const auto& [key, value] : a.data) {
        if (n + 2 >= 17) break;
        kv[n++] = key.c_str();
        kv[n++] = value.c_str();
    }
    BrlAudit_VLog(a.event.c_str(), a.user.c_str(), "tesk", a.outcome, kv[0], kv[1], kv[2], kv[3],
                  kv[4], kv[5], kv[6], kv[7], kv[8], kv[9], kv[10], kv[11], kv[12], kv[13], kv[14],
                  kv[15], static_cast<const char*>(nullptr));
}

}  // namespace

void PostEvent(int priority, const std::string& text, const AuditRecord* audit,
               const char* noxFormat, ...) {
    Platform::Log(priority, "%s", text.c_str());
    if (audit) WriteAudit(*audit);
    if (!noxFormat) return;
    if (InitNoxUserLib() != 0) return;
    va_list args;
    va_start(args, noxFormat);
    char* formatted = nullptr;
    int n = ::vasprintf(&formatted, noxFormat, args);
    va_end(args);
    if (n >= 0) {
        // The text is already formatted; hand it over as data, not as a format.
        NoxUserLib_AddNox("%s", formatted);
        std::free(formatted);
    }
    NoxUserLib_Close();
}

}  // namespace Tesk
