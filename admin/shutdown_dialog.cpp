// The shut down / restart question and its two power actions.
#include "admin/shutdown_dialog.h"

#include <syslog.h>

#include "admin/power.h"
#include "platform/events.h"
#include "ui/footers.h"
#include "ui/keys.h"
#include "ui/string_ids.h"
#include "ui/strings.h"

namespace Tesk {

ShutdownDialog::ShutdownDialog(Window* opener, const HostContext& host)
    : FormDialog(opener, {60, 19, 13}), host_(host) {
    setTitle(Str(StrId::ShutDownRestartTitle));
    setBody(Str(StrId::ShutDownRestartHelp));
    setFooter(Footer::kShutDownRestartCancel);
    force_ = &items().emplace<CheckItem>(Str(StrId::ForcefullyTerminateVms), false);
}

KeyResult ShutdownDialog::onKey(int key) {
    if (key == KEY_F(2)) {
        PostEvent(LOG_INFO, "Shutting down host", nullptr,
                  "@&!*@*@(nox.user.tesk.shutdown.host)Shutting down host");
        ShutDownHost(this, host_, !force_->checked());
        return KeyResult::Redraw();
    }
    if (key == KEY_F(11)) {
        PostEvent(LOG_INFO, "Rebooting host", nullptr,
                  "@&!*@*@(nox.user.tesk.reboot.host)Rebooting host");
        RestartHost(this, host_, !force_->checked());
        return KeyResult::Redraw();
    }
    return KeyResult::Ignored();
}

}  // namespace Tesk
