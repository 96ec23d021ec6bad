// The host name and domain the login dialogs name the host by.
#pragma once

#include <string>

#include "hostctl/backend.h"

namespace Tesk {

// "<lead><host>.<domain>." — always ends in a point, host and domain joined by
// one even when the domain is empty. A host that cannot be asked gives empty
// names (logged). Markup: host and domain are escaped, the lead is not.
std::string HostMessage(const HostCtl::Backend& host, const std::string& lead);

}  // namespace Tesk
