// The host's management agents: the services remote management talks to. The
// interface only; a host backend (hostctl/backend.h) hands out the object.
#pragma once

#include <string>

namespace HostCtl::Agents {

class ManagementAgents {
public:
    virtual ~ManagementAgents() = default;

    // Asks the agents to read the host's configuration again, acting as user
    // (empty: as the host's administrator). Failures are logged, never thrown.
    virtual void Refresh(const std::string& user) const = 0;
    // Stops and starts every management agent; each logs its outcome.
    virtual void Stop() const = 0;
    virtual void Start() const = 0;
    // Writes a live core of the main agent to the host's log folder; true
    // when one was written. May take long: callers run it on a worker
    // thread. Logs its own failure.
    virtual bool CollectLiveCore() const = 0;
};

}  // namespace HostCtl::Agents
