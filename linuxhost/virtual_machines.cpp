// Whether virtual machines run on the host, for the warnings before a shut
// down and a factory network restore.
#include "hostctl/exception.h"
#include "linuxhost/hypervisor.h"
#include "linuxhost/lazy_library.h"
#include "linuxhost/run_objects.h"
#include "platform/syslog.h"

namespace LinuxHost {
namespace {

class ResourceInfo : public HostCtl::Resource::ResourceInfo {
public:
    bool HasRunningVirtualMachines() const override {
        // A host without libvirt runs no machines the console could stop.
        if (!kLibvirt.Available()) return false;
        const auto running = ConnectHypervisor()->Running();
        Tesk::Platform::Log(LOG_INFO, "%zu virtual machines running", running.size());
        return !running.empty();
    }
};

}  // namespace

std::unique_ptr<HostCtl::Resource::ResourceInfo> MakeResourceInfo() {
    return std::make_unique<ResourceInfo>();
}

}  // namespace LinuxHost
