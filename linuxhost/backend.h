// The Linux host's backend, as the program sees it: the two makers that the
// backend choice (app/backend_choice.cpp) offers under the name "linux".
#pragma once

#include <memory>

#include "hostctl/backend.h"
#include "platform/host_platform.h"

namespace LinuxHost {

// The host-control objects of the Linux host the console runs on (or of the
// host kept under TESK_ROOT: every file it reads or writes resolves there).
std::unique_ptr<HostCtl::Backend> MakeLinuxBackend();

// The platform hooks of a Linux host.
std::unique_ptr<Tesk::Platform::HostPlatform> MakeLinuxPlatform();

}  // namespace LinuxHost
