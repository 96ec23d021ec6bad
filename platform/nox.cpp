#include "platform/nox.h"

#include <syslog.h>

#include <cstdarg>
#include <cstdio>
#include <ctime>

#include "platform/hostroot.h"
#include "platform/regular_file.h"

namespace {
bool g_open = false;
Tesk::Platform::NoxInitCheck g_initCheck = nullptr;
}  // namespace

void Tesk::Platform::SetNoxInitCheck(NoxInitCheck check) {
    g_initCheck = check;
}

std::pair<std::string, std::string> Tesk::Platform::SplitNoxText(const std::string& text) {
    const std::string marker = kNoxMarker;
    if (text.rfind(marker, 0) == 0) {
        auto close = text.find(')', marker.size());
        if (close != std::string::npos)
            return {text.substr(marker.size(), close - marker.size()), text.substr(close + 1)};
    }
    return {"-", text};
}

int NoxUserLib_Init() {
    if (g_initCheck) {
        int code = g_initCheck();
        if (code != 0) return code;
    }
    g_open = true;
    return 0;
}

int NoxUserLib_AddNox(const char* fmt, ...) {
    if (!g_open) return -1;
    va_list args;
    va_start(args, fmt);
    char* raw = nullptr;
    int n = ::vasprintf(&raw, fmt, args);
    va_end(args);
    if (n < 0) return -1;
    std::string text(raw, static_cast<size_t>(n));
    ::free(raw);

    auto [id, message] = Tesk::Platform::SplitNoxText(text);
    if (!Tesk::Platform::IsSimulatedRoot()) {
        ::syslog(LOG_USER | LOG_INFO, "event %s: %s", id.c_str(), message.c_str());
        return 0;
    }
    char stamp[32] = "";
    std::time_t now = std::time(nullptr);
    struct tm tm {};
    ::gmtime_r(&now, &tm);
    std::strftime(stamp, sizeof stamp, "%Y-%m-%dT%H:%M:%SZ", &tm);
    std::string line = std::string(stamp) + " " + id + " " + message + "\n";
    return Tesk::Platform::AppendLine(Tesk::Platform::HostPath("/var/log/noxd.log"), line) ? 0 : -1;
}

void NoxUserLib_Close() {
    g_open = false;
}
