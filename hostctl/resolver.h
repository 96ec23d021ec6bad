// Name resolution through the host's DNS settings alone: the answer comes
// from the name servers the host is configured with, never from its hosts
// file, so a name that only the hosts file knows does not resolve.
#pragma once

#include <string>

namespace HostCtl::Network {

class Resolver {
public:
    virtual ~Resolver() = default;
    // True when a name server answers with an address for `name` (completed
    // with the search domains as the host's resolver does). Safe to call from
    // a worker thread; may take as long as the name servers take. Throws
    // HostCtl::Lib::HostCtlException when the host cannot be asked.
    virtual bool Resolve(const std::string& name) const = 0;
};

}  // namespace HostCtl::Network
