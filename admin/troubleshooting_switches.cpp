// The shell and SSH switches of the troubleshooting window.
#include "admin/troubleshooting_switches.h"

#include "platform/syslog.h"

namespace Tesk {

void SwitchService(const HostContext& host, HostCtl::Services::Service service, bool* enabled) {
    const bool on = !*enabled;
    host.backend.GetShellServices()->Switch(service, on, host.user);
    *enabled = on;
    const bool shell = service == HostCtl::Services::Service::Shell;
    Platform::Log(LOG_INFO,
                  shell ? (on ? "User %s enabled Kovix Shell" : "User %s disabled Kovix Shell")
                        : (on ? "User %s enabled SSH" : "User %s disabled SSH"),
                  host.user.c_str());
}

}  // namespace Tesk
