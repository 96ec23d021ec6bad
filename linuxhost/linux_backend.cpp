// The Linux backend's construction and the makers the program uses. Making
// the backend opens nothing: netlink sockets and bus connections are made by
// the calls that need them, after the first frame.
#include "linuxhost/linux_backend.h"

#include "hostctl/exception.h"
#include "linuxhost/backend.h"
#include "linuxhost/change_record.h"
#include "linuxhost/fail.h"
#include "linuxhost/platform.h"
#include "platform/syslog.h"

namespace LinuxHost {

LinuxBackend::LinuxBackend() = default;
LinuxBackend::~LinuxBackend() = default;

std::string LinuxBackend::WhyNotOffered(HostCtl::Feature feature) const {
    switch (feature) {
        case HostCtl::Feature::Vlan:
        case HostCtl::Feature::NicTeaming:
        case HostCtl::Feature::SecondStandardSwitch:
            return WhyNetworkFeatureNotOffered(feature);
        case HostCtl::Feature::CustomExtensions:
        case HostCtl::Feature::SmartCardLogin:
            return WhySystemFeatureNotOffered(feature);
        case HostCtl::Feature::LockdownMode:
        case HostCtl::Feature::LiveCoreDump:
            return WhyMachineFeatureNotOffered(feature);
    }
    return {};
}

std::unique_ptr<HostCtl::Changes::ChangeRecord> LinuxBackend::GetChangeRecord() const {
    return std::make_unique<FileChangeRecord>([](HostCtl::Changes::ChangeKind kind) {
        if (kind == HostCtl::Changes::ChangeKind::AgentsRestart)
            StartAgentsAgain();
        else
            FollowNetworkFiles();
    });
}

void Fail(const std::string& text) {
    Tesk::Platform::Log(LOG_ERR, "%s", text.c_str());
    throw HostCtl::Lib::HostCtlException(text);
}

void NotOnThisHost(const char* what) {
    throw HostCtl::Lib::HostCtlException(std::string(what) + " is not available on this host");
}

std::unique_ptr<HostCtl::Backend> MakeLinuxBackend() {
    return std::make_unique<LinuxBackend>();
}

std::unique_ptr<Tesk::Platform::HostPlatform> MakeLinuxPlatform() {
    return std::make_unique<LinuxPlatform>();
}

}  // namespace LinuxHost
