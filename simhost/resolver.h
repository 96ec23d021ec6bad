// The simulated host's resolver: answers from the outside network's name
// servers (simhost/outside_network.h).
#pragma once

#include <memory>
#include <string>

#include "hostctl/resolver.h"

namespace ZrkCtl::Network {

// Fault "resolver.resolve": {"exception": text} fails the call;
// {"delayMs": n} makes it take n milliseconds first (a slow name server),
// cut short when the console is asked to end.
std::unique_ptr<HostCtl::Network::Resolver> MakeResolver(const std::string& netStack);

}  // namespace ZrkCtl::Network
