// Lockdown mode, which a Linux host does not have: its logins are its PAM
// stack's, with no central management to hand them to. The menu entry is not
// offered (backend_machine.cpp); the object answers off and refuses a switch.
#include "hostctl/exception.h"
#include "linuxhost/run_objects.h"

namespace LinuxHost {
namespace {

class LockdownMode : public HostCtl::Lockdown::LockdownMode {
public:
    bool IsEnabled() const override { return false; }
    bool IsPossible() const override { return false; }
    void SetEnabled(bool) const override {
        throw HostCtl::Lib::HostCtlException("Lockdown mode is not available on this host");
    }
};

}  // namespace

std::unique_ptr<HostCtl::Lockdown::LockdownMode> MakeLockdownMode() {
    return std::make_unique<LockdownMode>();
}

}  // namespace LinuxHost
