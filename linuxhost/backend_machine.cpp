// The Linux backend's running parts: virtual machines through libvirt,
// power through logind, the shell services and management agents as systemd
// units, and lockdown mode.
#include "linuxhost/linux_backend.h"

namespace LinuxHost {

std::unique_ptr<HostCtl::Resource::ResourceInfo> LinuxBackend::GetResourceInfo() const {
    NotOnThisHost("The virtual machines");
}

std::unique_ptr<HostCtl::Power::PowerControl> LinuxBackend::GetPowerControl() const {
    NotOnThisHost("Power control");
}

std::unique_ptr<HostCtl::Agents::ManagementAgents> LinuxBackend::GetManagementAgents() const {
    NotOnThisHost("The management agents");
}

std::unique_ptr<HostCtl::Services::ShellServices> LinuxBackend::GetShellServices() const {
    NotOnThisHost("The shell services");
}

std::unique_ptr<HostCtl::Lockdown::LockdownMode> LinuxBackend::GetLockdownMode() const {
    NotOnThisHost("Lockdown mode");
}

std::string WhyMachineFeatureNotOffered(HostCtl::Feature /*feature*/) {
    return {};
}

}  // namespace LinuxHost

namespace LinuxHost {
void StartAgentsAgain() { NotOnThisHost("The management agents"); }
}  // namespace LinuxHost
