// What is wrong with a management network before it is written: values that
// would cut the host off its network. Each problem is one sentence; the
// administrator decides whether to go back or to apply anyway.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "network/pending_config.h"

namespace Tesk {

// Whether a physical NIC has a link now; none when it cannot be read.
using LinkProbe = std::function<std::optional<bool>(const std::string& pnic)>;

// The problems of pending, in the order of the window's topics. linkUp is
// asked about the chosen adapters only.
std::vector<std::string> ProblemsBeforeApplying(const PendingNetworkConfig& pending,
                                                const LinkProbe& linkUp);

// Why text is no DNS host name ("" when it is one): empty, a label empty or
// longer than 63 characters, a label starting or ending with "-", a character
// other than letters, digits, "-" and ".", or longer than 253 characters.
std::string HostnameProblem(const std::string& text);

}  // namespace Tesk
