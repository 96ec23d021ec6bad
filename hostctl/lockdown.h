// The host's lockdown mode: while it is on, users cannot log in to the host
// directly. The interface only; a host backend (hostctl/backend.h) hands out
// the object.
#pragma once

namespace HostCtl::Lockdown {

class LockdownMode {
public:
    virtual ~LockdownMode() = default;

    // Whether lockdown mode is on. A host that cannot answer, or whose answer
    // was cut short, answers false; the failure is logged, nothing is thrown.
    virtual bool IsEnabled() const = 0;
    // Whether lockdown mode could be switched on now; false likewise.
    virtual bool IsPossible() const = 0;

    // Switches lockdown mode on (true) or off (false). Switching it to the
    // state it is in already, or on while that is not possible, fails. A
    // failure throws HostCtl::Lib::HostCtlException whose text is the host's
    // own error message (how the host's call ended when it gave none);
    // lockdown mode is then as it was.
    virtual void SetEnabled(bool enabled) const = 0;
};

}  // namespace HostCtl::Lockdown
