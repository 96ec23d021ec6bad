// The network outside the simulated host: the physical segments its adapters
// are cabled to, the VLANs each segment carries with their subnets, gateways,
// hosts and name servers, and the names those servers resolve
// ("/network/outside" of the state, docs/simulated-host.md). The simulated
// ping and the resolver ask it what the management interface can reach.
#pragma once

#include <string>

#include "simhost/simhost.h"

namespace ZrkCtl::Network::Outside {

using Json = Sim::Json;

struct Reach {
    bool reached = false;
    // Why not (for the tools' output); empty when reached.
    std::string why;
};

// Whether the management interface reaches `target` (an IPv4 or IPv6 address,
// an IPv6 zone is ignored) in `state`. The list "/reachable", when the state
// has one, decides alone.
Reach Reaches(const Json& state, const std::string& target);

// Whether a name server of the host's DNS settings that the management
// interface reaches, and that serves DNS on the outside network, knows `name`
// (as given, or completed with the search domains and the host's domain).
// The hosts file plays no part.
bool Resolves(const Json& state, const std::string& name);

}  // namespace ZrkCtl::Network::Outside
