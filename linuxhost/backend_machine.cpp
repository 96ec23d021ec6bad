// The Linux backend's running parts: virtual machines through libvirt,
// power through logind, the shell services and management agents as systemd
// units, and lockdown mode (not offered). Each object lives in its own file
// (linuxhost/run_objects.h).
#include "linuxhost/linux_backend.h"
#include "linuxhost/run_objects.h"

namespace LinuxHost {

std::unique_ptr<HostCtl::Resource::ResourceInfo> LinuxBackend::GetResourceInfo() const {
    return MakeResourceInfo();
}

std::unique_ptr<HostCtl::Power::PowerControl> LinuxBackend::GetPowerControl() const {
    return MakePowerControl();
}

std::unique_ptr<HostCtl::Agents::ManagementAgents> LinuxBackend::GetManagementAgents() const {
    return MakeManagementAgents();
}

std::unique_ptr<HostCtl::Services::ShellServices> LinuxBackend::GetShellServices() const {
    return MakeShellServices();
}

std::unique_ptr<HostCtl::Lockdown::LockdownMode> LinuxBackend::GetLockdownMode() const {
    return MakeLockdownMode();
}

// An agents' restart cut short left some units stopped: start them all.
void StartAgentsAgain() {
    MakeManagementAgents()->Start();
}

std::string WhyMachineFeatureNotOffered(HostCtl::Feature feature) {
    switch (feature) {
        case HostCtl::Feature::LockdownMode:
            return "A Linux host has no lockdown mode: its PAM stack decides who logs in.";
        case HostCtl::Feature::LiveCoreDump:
            return "This host has no way to take a live core of a running agent.";
        default:
            return {};
    }
}

}  // namespace LinuxHost
