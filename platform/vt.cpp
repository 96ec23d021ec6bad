#include "platform/vt.h"

#include <fcntl.h>
#include <linux/vt.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "platform/host_platform.h"

namespace Tesk::Platform {

void ActivateVirtualTerminal(int vt) {
    TheHostPlatform().ActivateVirtualTerminal(vt);
}

// The machine's own console. Deliberately no waiting after a successful
// activation.
void HostPlatform::ActivateVirtualTerminal(int vt) const {
    const int fd = ::open("/dev/console", O_RDWR | O_CLOEXEC);
    if (fd < 0) return;
    if (::ioctl(fd, VT_ACTIVATE, vt) != 0) ::ioctl(fd, VT_WAITACTIVE, vt);
    ::close(fd);
}

}  // namespace Tesk::Platform
