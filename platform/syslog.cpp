#include "platform/syslog.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "platform/host_platform.h"

namespace Tesk::Platform {
namespace {

std::string& Identity() {
    static std::string identity = "TESK";
    return identity;
}

}  // namespace

void OpenSyslog(const char* identity) {
    Identity() = identity;
    // openlog keeps the pointer: hand it the string that lives for the process.
    ::openlog(Identity().c_str(), LOG_PID, LOG_USER);
    ::setlogmask(LOG_UPTO(LOG_INFO));
}

const std::string& SyslogIdentity() {
    return Identity();
}

std::string FormatMirrorLine(const std::string& text) {
    char stamp[32] = "";
    std::time_t now = std::time(nullptr);
    struct tm tm {};
    ::localtime_r(&now, &tm);
    std::strftime(stamp, sizeof stamp, "%b %e %H:%M:%S", &tm);
    char host[256] = "";
    if (::gethostname(host, sizeof host - 1) != 0) std::strcpy(host, "localhost");
    return std::string(stamp) + " " + host + " " + Identity() + "[" + std::to_string(::getpid()) +
           "]: " + text;
}

void VLog(int priority, const char* fmt, va_list args) {
    if (LOG_PRI(priority) > LOG_INFO) return;
    va_list copy;
    va_copy(copy, args);
    char small[512];
    int n = std::vsnprintf(small, sizeof small, fmt, copy);
    va_end(copy);
    std::string text;
    if (n < 0) return;
    if (static_cast<size_t>(n) < sizeof small) {
        text.assign(small, static_cast<size_t>(n));
    } else {
        text.resize(static_cast<size_t>(n) + 1);
        std::vsnprintf(text.data(), text.size(), fmt, args);
        text.resize(static_cast<size_t>(n));
    }
    TheHostPlatform().WriteLogLine(priority, text);
}

void HostPlatform::WriteLogLine(int priority, const std::string& text) const {
    ::syslog(priority, "%s", text.c_str());
}

void Log(int priority, const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    VLog(priority, fmt, args);
    va_end(args);
}

void LogSystemError(const char* what) {
    int err = errno;
    char buf[128] = "";
    // The GNU strerror_r may return a static string instead of filling buf.
    const char* msg = ::strerror_r(err, buf, sizeof buf);
    Log(LOG_ERR, "%s with errno(%d): %s", what, err, msg);
    errno = err;
}

}  // namespace Tesk::Platform
