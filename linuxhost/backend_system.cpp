// The Linux backend's account of what the host is (os-release, DMI, cpuinfo,
// meminfo), its keyboard layout (console-setup), its configuration as a
// whole, its support information, its advanced options and smart cards.
#include "linuxhost/linux_backend.h"

namespace LinuxHost {

std::unique_ptr<HostCtl::Hardware::HardwareInfo> LinuxBackend::GetHardwareInfo() const {
    NotOnThisHost("The hardware information");
}

std::unique_ptr<HostCtl::Hardware::CpuInfo> LinuxBackend::GetCpuInfo() const {
    NotOnThisHost("The CPU information");
}

std::unique_ptr<HostCtl::Hardware::MemoryInfo> LinuxBackend::GetMemoryInfo() const {
    NotOnThisHost("The memory information");
}

std::unique_ptr<HostCtl::Hardware::SmartCardInfo> LinuxBackend::GetSmartCardInfo() const {
    NotOnThisHost("Smart cards");
}

std::unique_ptr<HostCtl::System::SystemInfo> LinuxBackend::GetSystemInfo() const {
    NotOnThisHost("The system information");
}

void LinuxBackend::StoreUserAccountsToCs() const {
    NotOnThisHost("Storing the accounts");
}

std::unique_ptr<HostCtl::Configuration::HostConfiguration> LinuxBackend::GetHostConfiguration() const {
    NotOnThisHost("The host configuration");
}

std::unique_ptr<HostCtl::Support::SupportInformation> LinuxBackend::GetSupportInformation() const {
    NotOnThisHost("The support information");
}

std::unique_ptr<HostCtl::Adv::AdvancedOption> LinuxBackend::GetAdvancedOptions() const {
    NotOnThisHost("The advanced options");
}

std::unique_ptr<HostCtl::Adv::UserAdvancedOption> LinuxBackend::GetUserAdvancedOptions() const {
    NotOnThisHost("The user advanced options");
}

std::string WhySystemFeatureNotOffered(HostCtl::Feature /*feature*/) {
    return {};
}

}  // namespace LinuxHost
