// The number in a pid file (or a /proc entry's name), read strictly.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

namespace Tesk::Platform {

// Exactly one decimal number from 1 to the kernel's largest pid, white space
// around it allowed; none for anything else (so "99999999999999999999" is no
// pid, rather than one that wraps to -1).
std::optional<pid_t> ParsePidText(const std::string& text);

}  // namespace Tesk::Platform
