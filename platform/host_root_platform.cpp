// A simulated host root's own logs, and what it refuses to touch.
#include "platform/host_root_platform.h"

#include <link.h>

#include <cstdlib>
#include <cstring>

#include "platform/audit.h"
#include "platform/regular_file.h"
#include "platform/syslog.h"

namespace Tesk::Platform {
namespace {

// Whether PAM goes to the root's own users: pam_wrapper is loaded and
// switched on (it reads the service files of the root's etc/simhost).
bool PamWrapperActive() {
    const char* on = std::getenv("PAM_WRAPPER");
    if (on == nullptr || std::strcmp(on, "1") != 0) return false;
    bool loaded = false;
    ::dl_iterate_phdr(
        [](dl_phdr_info* info, std::size_t, void* found) {
            if (info->dlpi_name && std::strstr(info->dlpi_name, "libpam_wrapper")) {
                *static_cast<bool*>(found) = true;
                return 1;
            }
            return 0;
        },
        &loaded);
    return loaded;
}

}  // namespace

HostRootPlatform::HostRootPlatform(std::string root) : root_(std::move(root)) {}

int HostRootPlatform::PostObservationEvent(const std::string& id,
                                           const std::string& message) const {
    const std::string line = UtcStamp() + " " + id + " " + message + "\n";
    return AppendLine(root_ + "/var/log/noxd.log", line) ? 0 : -1;
}

void HostRootPlatform::WriteAuditRecord(const std::string& record) const {
    AppendLine(root_ + "/var/log/audit.log", record + "\n");
}

// The machine's system log broadcasts emergency lines to every terminal; a
// simulated host's lines are not the machine's.
void HostRootPlatform::WriteLogLine(int, const std::string& text) const {
    AppendLine(root_ + "/var/log/syslog.log", FormatMirrorLine(text) + "\n");
}

void HostRootPlatform::ActivateVirtualTerminal(int vt) const {
    Log(LOG_ERR, "Virtual terminal %d not activated: the simulated host keeps no terminals", vt);
}

bool HostRootPlatform::PamReachesHostUsers() const {
    if (PamWrapperActive()) return true;
    Log(LOG_ERR, "Login refused: PAM does not go to the simulated host's users");
    return false;
}

}  // namespace Tesk::Platform
