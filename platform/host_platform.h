// The platform hooks: what differs between the machines the console can run
// on, below the host-control interfaces. The chosen host backend provides its
// hooks and the program installs them once at start-up; until then (and in a
// program that installs none) the machine's own behaviour answers.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "platform/zsi.h"

namespace Tesk::Platform {

// Each hook's default is the machine's own behaviour. The defaults are
// defined beside the entry point that uses them: ReadSystemNode in zsi.cpp,
// CheckEventService and PostObservationEvent in nox.cpp, WriteAuditRecord in
// audit.cpp, WriteLogLine in syslog.cpp, ActivateVirtualTerminal in vt.cpp.
class HostPlatform {
public:
    virtual ~HostPlatform() = default;

    // A system-information node (ZSI_Get's contract: 0, or -1 when it cannot
    // be read or does not fit). The machine has none: -1.
    virtual int ReadSystemNode(ZSI_Node node, void* out, std::size_t size) const;

    // The event service's start-up check: 0, or an error code. The machine: 0.
    virtual int CheckEventService() const;
    // Hands one observation event (its id, "-" without one, and its text) to
    // the event service: 0, or -1 when it was not taken. The machine: a
    // syslog line "event <id>: <message>" (user facility).
    virtual int PostObservationEvent(const std::string& id, const std::string& message) const;

    // One audit record, a JSON line without its line feed. The machine: a
    // syslog line "audit: <record>" (authpriv facility).
    virtual void WriteAuditRecord(const std::string& record) const;

    // One syslog line at priority (a facility in it is honoured). The machine:
    // its system log.
    virtual void WriteLogLine(int priority, const std::string& text) const;

    // Makes vt the active virtual terminal. The machine: VT_ACTIVATE on
    // "/dev/console", and only when that fails VT_WAITACTIVE; nothing happens
    // when the device cannot be opened.
    virtual void ActivateVirtualTerminal(int vt) const;

    // Whether a PAM exchange reaches the accounts of the host being served;
    // false refuses the login or password change (the hook logs why). The
    // machine: always.
    virtual bool PamReachesHostUsers() const;
};

// The installed hooks; the machine's own when none are installed.
const HostPlatform& TheHostPlatform();

// Installs platform as the hooks TheHostPlatform() answers (null: the
// machine's own again). A program installs its backend's hooks once, before
// its first log line; a replaced platform stays alive until the process ends,
// so a detached worker that still holds it is safe.
void InstallHostPlatform(std::unique_ptr<HostPlatform> platform);

}  // namespace Tesk::Platform
