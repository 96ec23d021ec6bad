// The factory network restore: the confirmation and the progress dialog.
#include "recovery/restore_network_dialog.h"

#include <syslog.h>

#include "admin/running_vms_warning.h"
#include "host/recorded_change.h"
#include "platform/events.h"
#include "platform/nox.h"
#include "platform/syslog.h"
#include "ui/footers.h"
#include "ui/string_ids.h"

namespace Tesk {

namespace {

constexpr DialogSize kSize{60, 12, 6};

// Clears the network and lets the host configure it with its defaults.
void AutoConfigure(ProgressDialog& progress, const HostCtl::Network::NetworkInfo& network) {
    progress.add(std::string(Str(StrId::AutoConfiguringNetwork)));
    Platform::Log(LOG_INFO, "Clearing Network Config");
    network.ClearNetworkConfig();
    Platform::Log(LOG_INFO, "Auto-Configuring Network");
    network.AutoConfigNetwork();
    progress.done();
}

// 0 when the administrator declines to power off the running machines.
int Restore(ProgressDialog& progress, const HostCtl::Backend& backend) {
    const auto resources = backend.GetResourceInfo();
    const auto network = backend.GetNetworkInfo();
    const bool running = resources->HasRunningVirtualMachines();
    if (running && !ConfirmRunningVms(&progress)) return 0;
    // From the machines' power-off to the new network, one change: a run cut
    // short puts the machines and the network back as they were.
    RecordedChange change(backend, HostCtl::Changes::ChangeKind::FactoryNetworkRestore);
    if (!running) {
        network->DisableNetDumper();
        AutoConfigure(progress, *network);
    } else {
        progress.add(Str(StrId::PoweringOffVms));
        const bool poweredOff = backend.GetPowerControl()->PowerOffAllVirtualMachines();
        network->DisableNetDumper();
        if (poweredOff) {
            progress.done();
            AutoConfigure(progress, *network);
        } else {
            progress.failed();
            Platform::Log(LOG_ERR, "Powering off VMs failed");
        }
    }
    change.Finish();
    progress.waitForEnter(Footer::kOkJoined);
    return 1;
}

}  // namespace

RestoreNetworkDialog::RestoreNetworkDialog(Window* opener, const HostContext& host)
    : ConfirmDialog(opener, kSize, Str(StrId::RestoreNetworkFactorySettings),
                    Str(StrId::RestoreNetworkFactorySettingsHelp), Footer::kYesResetCancel,
                    ConfirmDialog::F11()),
      host_(host) {
    setQuestion(Str(StrId::ResetNetworkAreYouSure));
}

int RestoreNetworkDialog::run() {
    if (ConfirmDialog::run() != kYes) return 0;
    DoRestoreNetworkDialog restore(this, host_);
    Run(restore);
    Platform::Log(LOG_INFO, "Restoring factory network settings");
    if (InitNoxUserLib() == 0) {
        NoxUserLib_AddNox("%snox.user.tesk.factory.network.restored)%s", kNoxMarker,
                          "Restoring factory network settings");
        NoxUserLib_Close();
    }
    return 1;
}

DoRestoreNetworkDialog::DoRestoreNetworkDialog(Window* opener, const HostContext& host)
    : ProgressDialog(opener, kSize, Str(StrId::RestoreNetworkSettingsTitle),
                     Str(StrId::FactoryNetworkRestoreWait),
                     [&backend = host.backend](ProgressDialog& progress) {
                         return Restore(progress, backend);
                     }) {}

}  // namespace Tesk
