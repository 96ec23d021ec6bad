// The Linux backend's account of what the host is (os-release, DMI, cpuinfo,
// meminfo), its keyboard layout (console-setup), its configuration as a
// whole, its support information, its logs, its advanced options and smart
// cards.
#include <mutex>

#include "hostctl/exception.h"
#include "linuxhost/adv.h"
#include "linuxhost/configuration.h"
#include "linuxhost/hardware.h"
#include "linuxhost/linux_backend.h"
#include "linuxhost/logs.h"
#include "linuxhost/smartcard.h"
#include "linuxhost/support_info.h"
#include "linuxhost/system_info.h"
#include "platform/syslog.h"

namespace LinuxHost {

std::unique_ptr<HostCtl::Hardware::HardwareInfo> LinuxBackend::GetHardwareInfo() const {
    return std::make_unique<HardwareInfoImpl>();
}

std::unique_ptr<HostCtl::Hardware::CpuInfo> LinuxBackend::GetCpuInfo() const {
    return std::make_unique<CpuInfoImpl>();
}

std::unique_ptr<HostCtl::Hardware::MemoryInfo> LinuxBackend::GetMemoryInfo() const {
    return std::make_unique<MemoryInfoImpl>();
}

// A host that does not offer the card path has no cards to show; the
// reason is logged when it changes (the login asks at every dialog).
std::unique_ptr<HostCtl::Hardware::SmartCardInfo> LinuxBackend::GetSmartCardInfo() const {
    static std::mutex mutex;
    static std::string logged;
    const std::string reason = WhySmartCardLoginNotOffered();
    {
        const std::lock_guard lock(mutex);
        if (reason != logged)
            Tesk::Platform::Log(LOG_INFO, "Smart-card login %s%s",
                                reason.empty() ? "offered" : "not offered: ", reason.c_str());
        logged = reason;
    }
    if (!reason.empty()) throw HostCtl::Lib::HostCtlException(reason);
    return std::make_unique<SmartCardInfoImpl>();
}

std::unique_ptr<HostCtl::System::SystemInfo> LinuxBackend::GetSystemInfo() const {
    return std::make_unique<SystemInfoImpl>();
}

// The host's PAM stack has written the password to the host's own account
// files already: there is nothing further to store.
void LinuxBackend::StoreUserAccountsToCs() const {
    Tesk::Platform::Log(LOG_DEBUG, "The accounts are kept by the host's PAM stack");
}

std::unique_ptr<HostCtl::Configuration::HostConfiguration> LinuxBackend::GetHostConfiguration()
    const {
    return std::make_unique<HostConfigurationImpl>();
}

std::unique_ptr<HostCtl::Support::SupportInformation> LinuxBackend::GetSupportInformation() const {
    return std::make_unique<SupportInformationImpl>();
}

std::unique_ptr<HostCtl::Logs::SystemLogs> LinuxBackend::GetSystemLogs() const {
    return std::make_unique<SystemLogsImpl>();
}

std::unique_ptr<HostCtl::Adv::AdvancedOption> LinuxBackend::GetAdvancedOptions() const {
    return std::make_unique<AdvancedOptionImpl>();
}

std::unique_ptr<HostCtl::Adv::UserAdvancedOption> LinuxBackend::GetUserAdvancedOptions() const {
    return std::make_unique<UserAdvancedOptionImpl>();
}

std::string WhySystemFeatureNotOffered(HostCtl::Feature feature) {
    switch (feature) {
        case HostCtl::Feature::CustomExtensions:
            return "A Linux host has no custom extensions to remove.";
        case HostCtl::Feature::SmartCardLogin: {
            // Probed once, as the screens expect; the login itself asks
            // again at every dialog (GetSmartCardInfo).
            static const std::string reason = WhySmartCardLoginNotOffered();
            return reason;
        }
        default:
            return {};
    }
}

}  // namespace LinuxHost
