// The reset steps: confirm, act, then an <Enter>-only restart.
#include "admin/reset_dialog.h"

#include <syslog.h>

#include "host/runner.h"
#include "platform/events.h"
#include "platform/waiting.h"
#include "ui/footers.h"
#include "ui/key_loop.h"
#include "ui/keys.h"
#include "ui/string_ids.h"
#include "ui/strings.h"

namespace Tesk {

const ResetSteps kFactoryReset{
    StrId::ResetSystemConfigurationConfirm,
    StrId::ResetSystemConfigurationWarning,
    StrId::ResetSystemConfigurationNow,
    StrId::ResetSystemConfigurationTitle,
    StrId::DefaultSettingsRestoreWait,
    StrId::DefaultSettingsRestored,
    "Restoring factory defaults",
    "@&!*@*@(nox.user.tesk.restore.factory.defaults)Restoring factory defaults",
    "/sbin/factoryConfig.py --reset-only > /dev/null 2>&1",
};

const ResetSteps kRemoveCustomExtensions{
    StrId::RemoveCustomExtensionsConfirm,
    StrId::RemoveCustomExtensionsWarning,
    StrId::RemoveCustomExtensionsNow,
    StrId::RemoveCustomExtensions,
    StrId::CustomExtensionsRemoveWait,
    StrId::CustomExtensionsRemoved,
    "Removing custom extensions",
    "@&!*@*@(nox.user.tesk.remove.custom.extensions)Removing custom extensions",
    "/sbin/factoryConfig.py --remove-custom-extensions > /dev/null 2>&1",
};

namespace {

int Steps(ProgressDialog& p, const ResetSteps& steps) {
    p.setFooter(Footer::kF11OkCancel);
    p.add(Str(steps.question));
    const int confirmed = RunKeyLoop(p, {.handler = [](int key) {
                                         if (key == KEY_F(11)) return KeyResult::Leave(1);
                                         if (key == KeyEscape) return KeyResult::Leave(0);
                                         return KeyResult::Handled();
                                     }});
    if (!confirmed) return 0;

    PostEvent(LOG_INFO, steps.logText, nullptr, "%s", steps.event);
    p.clear();
    p.setFooter("");
    p.setTitle(Str(steps.workTitle));
    p.setBody(Str(steps.workMessage));
    if (RunShellCommand(steps.command) != 0) return 0;

    p.setBody(Str(steps.doneMessage));
    // The host must restart: only <Enter> leaves.
    p.waitForEnter(Footer::kRestartHost);
    // Cut short because the host ends the console: no failure.
    if (RunShellCommand("reboot -f") == -1 && !Platform::QuitRequested()) return 0;
    p.holdScreen();
}

}  // namespace

RestoreDialog::RestoreDialog(Window* opener, const ResetSteps& steps)
    : ProgressDialog(opener, {70, 12, 7}, Str(steps.confirmTitle), Str(steps.warning),
                     [steps](ProgressDialog& p) { return Steps(p, steps); }) {}

}  // namespace Tesk
