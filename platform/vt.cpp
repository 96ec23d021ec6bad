#include "platform/vt.h"

#include <fcntl.h>
#include <linux/vt.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "platform/hostroot.h"
#include "platform/syslog.h"

namespace Tesk::Platform {

namespace {

VirtualTerminalProvider g_provider = nullptr;

// The machine's own console. Deliberately no waiting after a successful
// activation.
void ActivateOnTheConsole(int vt) {
    const int fd = ::open("/dev/console", O_RDWR | O_CLOEXEC);
    if (fd < 0) return;
    if (::ioctl(fd, VT_ACTIVATE, vt) != 0) ::ioctl(fd, VT_WAITACTIVE, vt);
    ::close(fd);
}

}  // namespace

void ActivateVirtualTerminal(int vt) {
    if (!IsSimulatedRoot()) {
        ActivateOnTheConsole(vt);
        return;
    }
    if (g_provider == nullptr) {
        Log(LOG_ERR, "Virtual terminal %d not activated: the simulated host keeps no terminals",
            vt);
    } else if (!g_provider(vt)) {
        Log(LOG_ERR, "Activating virtual terminal %d of the simulated host failed", vt);
    } else {
        Log(LOG_INFO, "Activated virtual terminal %d of the simulated host", vt);
    }
}

void SetVirtualTerminalProvider(VirtualTerminalProvider provider) {
    g_provider = provider;
}

}  // namespace Tesk::Platform
