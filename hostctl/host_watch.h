// Waiting for the host to change: a descriptor that becomes readable when
// what the welcome screen shows (addresses, links, the host's state) may
// have changed, so a screen redraws at once instead of polling. The
// interface only; a backend hands one out (Backend::WatchHost).
#pragma once

namespace HostCtl {

class HostWatch {
public:
    virtual ~HostWatch() = default;
    // Readable (poll POLLIN) after a change; stays so until Drain().
    virtual int Descriptor() const = 0;
    // Takes every pending notification, without waiting.
    virtual void Drain() = 0;
};

}  // namespace HostCtl
