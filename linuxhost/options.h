// The Linux backend's own settings: one small key=value file under the host
// root (kOptionsFile), read at every call so a change made by the console or
// by hand counts at once. A key that is missing or whose value is not valid
// gives its default, with a log line for a bad value.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace LinuxHost::Options {

inline constexpr const char kOptionsFile[] = "/etc/tesk/linux-host.conf";

// The value of key, or its default; nullopt for a key the backend does not know.
std::optional<std::string> Text(std::string_view key);

// Sets key to value in the file (written whole, atomically); false (logged)
// when the key is unknown or the file cannot be written.
bool Set(std::string_view key, std::string_view value);

}  // namespace LinuxHost::Options
