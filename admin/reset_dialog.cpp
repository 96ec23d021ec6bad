// The reset steps: confirm, act, then an <Enter>-only restart.
#include "admin/reset_dialog.h"

#include <syslog.h>

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
    &HostCtl::Configuration::HostConfiguration::ResetToFactoryDefaults,
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
    &HostCtl::Configuration::HostConfiguration::RemoveCustomExtensions,
};

namespace {

int Steps(ProgressDialog& p, const HostCtl::Backend& host, const ResetSteps& steps) {
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
    const auto configuration = host.GetHostConfiguration();
    if (!((*configuration).*steps.operation)()) return 0;

    p.setBody(Str(steps.doneMessage));
    // The host must restart: only <Enter> leaves.
    p.waitForEnter(Footer::kRestartHost);
    // Cut short because the host ends the console: no failure.
    if (!host.GetPowerControl()->ForceRestartHost() && !Platform::QuitRequested()) return 0;
    p.holdScreen();
}

}  // namespace

RestoreDialog::RestoreDialog(Window* opener, const HostCtl::Backend& host, const ResetSteps& steps)
    : ProgressDialog(opener, {70, 12, 7}, Str(steps.confirmTitle), Str(steps.warning),
                     [&host, steps](ProgressDialog& p) { return Steps(p, host, steps); }) {}

}  // namespace Tesk
