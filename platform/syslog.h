// Syslog for the console. The lines go where the installed platform hooks
// put them: the machine's system log, or a simulated root's
// var/log/syslog.log (platform/host_platform.h).
#pragma once

#include <syslog.h>

#include <cstdarg>
#include <string>

namespace Tesk::Platform {

// openlog(identity, LOG_PID, LOG_USER) and a mask of emergency..info.
void OpenSyslog(const char* identity = "TESK");

// The identity used in mirrored lines ("TESK" unless OpenSyslog said otherwise).
const std::string& SyslogIdentity();

// syslog(priority, fmt, ...); debug lines are never written. A facility in
// priority (LOG_AUTH | LOG_INFO) is honoured.
void Log(int priority, const char* fmt, ...) __attribute__((format(printf, 2, 3)));
void VLog(int priority, const char* fmt, va_list args);

// "<what> with errno(<errno>): <strerror>" at error level, errno as it is now.
void LogSystemError(const char* what);

// The line a simulated root's log keeps, without its newline:
// "Nov 21 05:02:18 <host> <identity>[<pid>]: <text>".
std::string FormatMirrorLine(const std::string& text);

}  // namespace Tesk::Platform
