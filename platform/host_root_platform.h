// The platform hooks of a host kept in a directory of this machine (a
// simulated host root): it has its own logs, and it never reaches the
// machine's system log, console or accounts.
#pragma once

#include <string>

#include "platform/host_platform.h"
#include "platform/hostroot.h"

namespace Tesk::Platform {

// Log lines, audit records and observation events go to the root's own logs
// (var/log/syslog.log, audit.log, noxd.log; formats in docs/logs.md). No
// virtual terminal is switched: that is logged ("Virtual terminal %d not
// activated: the simulated host keeps no terminals"), and a host that keeps
// its terminal in its state overrides it. PAM is used only through
// pam_wrapper, which takes it to the root's own users; otherwise a login is
// refused and logged. The nodes and the event service's check are the
// machine's defaults (none, and 0).
class HostRootPlatform : public HostPlatform {
public:
    // The root's directory, "/" excluded (default: the host root now).
    explicit HostRootPlatform(std::string root = HostRoot());

    int PostObservationEvent(const std::string& id, const std::string& message) const override;
    void WriteAuditRecord(const std::string& record) const override;
    void WriteLogLine(int priority, const std::string& text) const override;
    void ActivateVirtualTerminal(int vt) const override;
    bool PamReachesHostUsers() const override;

private:
    std::string root_;
};

}  // namespace Tesk::Platform
