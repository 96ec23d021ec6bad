#include "linuxhost/platform.h"

#include <cstring>

#include "linuxhost/system_version.h"
#include "platform/host_root_platform.h"
#include "platform/hostroot.h"

namespace LinuxHost {

using Tesk::Platform::HostPlatform;

LinuxPlatform::LinuxPlatform() {
    if (Tesk::Platform::IsSimulatedRoot())
        root_ = std::make_unique<Tesk::Platform::HostRootPlatform>();
}

LinuxPlatform::~LinuxPlatform() = default;

int LinuxPlatform::ReadSystemNode(ZSI_Node node, void* out, std::size_t size) const {
    if (node != ZSI_NODE_system_version || size < sizeof(ZSI_SystemVersion)) return -1;
    const ZSI_SystemVersion version = ReadSystemVersion();
    std::memcpy(out, &version, sizeof version);
    return 0;
}

int LinuxPlatform::PostObservationEvent(const std::string& id, const std::string& message) const {
    return root_ ? root_->PostObservationEvent(id, message)
                 : HostPlatform::PostObservationEvent(id, message);
}

void LinuxPlatform::WriteAuditRecord(const std::string& record) const {
    root_ ? root_->WriteAuditRecord(record) : HostPlatform::WriteAuditRecord(record);
}

void LinuxPlatform::WriteLogLine(int priority, const std::string& text) const {
    root_ ? root_->WriteLogLine(priority, text) : HostPlatform::WriteLogLine(priority, text);
}

void LinuxPlatform::ActivateVirtualTerminal(int vt) const {
    root_ ? root_->ActivateVirtualTerminal(vt) : HostPlatform::ActivateVirtualTerminal(vt);
}

bool LinuxPlatform::PamReachesHostUsers() const {
    return root_ ? root_->PamReachesHostUsers() : HostPlatform::PamReachesHostUsers();
}

}  // namespace LinuxHost
