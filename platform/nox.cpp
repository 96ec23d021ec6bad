#include "platform/nox.h"

#include <syslog.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include "platform/host_platform.h"

namespace {
bool g_open = false;
}  // namespace

std::pair<std::string, std::string> Tesk::Platform::SplitNoxText(const std::string& text) {
    const std::string marker = kNoxMarker;
    if (text.rfind(marker, 0) == 0) {
        auto close = text.find(')', marker.size());
        if (close != std::string::npos)
            return {text.substr(marker.size(), close - marker.size()), text.substr(close + 1)};
    }
    return {"-", text};
}

// The machine's event service takes every event, into its system log.
int Tesk::Platform::HostPlatform::CheckEventService() const {
    return 0;
}

int Tesk::Platform::HostPlatform::PostObservationEvent(const std::string& id,
                                                       const std::string& message) const {
    ::syslog(LOG_USER | LOG_INFO, "event %s: %s", id.c_str(), message.c_str());
    return 0;
}

int NoxUserLib_Init() {
    int code = Tesk::Platform::TheHostPlatform().CheckEventService();
    if (code != 0) return code;
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
    std::free(raw);

    auto [id, message] = Tesk::Platform::SplitNoxText(text);
    return Tesk::Platform::TheHostPlatform().PostObservationEvent(id, message);
}

void NoxUserLib_Close() {
    g_open = false;
}
