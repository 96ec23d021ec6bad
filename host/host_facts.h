// The host facts a screen's own text may name as markup variables ("{ip}"),
// each a provider asked when the text is laid out, so the value is the host's
// at that moment.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "hostctl/backend.h"

namespace Tesk {

using HostFactProvider = std::function<std::string()>;
using HostFactMap = std::map<std::string, HostFactProvider, std::less<>>;

// "ip": the management interface's IPv4 address (empty without one or while
// it has none); "kovaproduct" and "kovaversion": the product and its version
// from the system-version node. A fact the host cannot tell reads as empty
// (logged). The backend must outlive the providers.
HostFactMap HostFacts(const HostCtl::Backend& host);

}  // namespace Tesk
