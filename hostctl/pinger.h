// Whether the management network reaches an address: the echo test the
// management network test runs for each address it is given. The interface
// only; a host backend (hostctl/backend.h) hands out the object.
#pragma once

#include <string>

namespace HostCtl::Network {

class Pinger {
public:
    virtual ~Pinger() = default;

    // Sends three echo requests to target (an IPv4 or IPv6 address; a
    // link-local IPv6 address carries the management interface as its scope,
    // "fe80::1%zrk0") and waits for the host's answer: true when the target
    // answered. A target that does not answer, a text that is no address and
    // a ping that could not run or was cut short (the console is ending) all
    // answer false; the outcome is logged, nothing is thrown. Changes nothing
    // on the host. May take seconds, or hang with the network: callers run it
    // on a worker thread, which is safe; the object keeps no reference to the
    // backend or the screen that made it, so the worker may outlive the screen.
    virtual bool Ping(const std::string& target) const = 0;
};

}  // namespace HostCtl::Network
