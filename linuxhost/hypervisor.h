// The host's virtual machines as the console needs them: which run, asking
// one to shut down, pulling its plug. Behind this seam so that a test can
// give machines that behave as libvirt's test driver cannot (one that
// ignores a shutdown request).
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace LinuxHost {

class Hypervisor {
public:
    virtual ~Hypervisor() = default;

    // The names of the running machines. Throws HostCtl::Lib::HostCtlException
    // when the hypervisor cannot be asked.
    virtual std::vector<std::string> Running() = 0;
    // Asks the machine's guest to shut down; false (logged) when the request
    // was refused.
    virtual bool Shutdown(const std::string& name) = 0;
    // Powers the machine off at once; false (logged) when that failed.
    virtual bool Destroy(const std::string& name) = 0;
};

// The hypervisor at the URI of the option "libvirt.uri", connected once for
// the object's life. Throws HostCtl::Lib::HostCtlException (logged) when
// libvirt is missing or the connection fails.
std::unique_ptr<Hypervisor> ConnectHypervisor();

}  // namespace LinuxHost
