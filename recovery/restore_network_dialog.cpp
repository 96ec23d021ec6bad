// The factory network restore: the confirmation and the progress dialog.
#include "recovery/restore_network_dialog.h"

#include <syslog.h>

#include "admin/running_vms_warning.h"
#include "host/runner.h"
#include "hostctl/backend.h"
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
int Restore(ProgressDialog& progress) {
    const auto resources = HostCtl::TheBackend().GetResourceInfo();
    const auto network = HostCtl::TheBackend().GetNetworkInfo();
    if (!resources->HasRunningVirtualMachines()) {
        network->DisableNetDumper();
        AutoConfigure(progress, *network);
    } else {
        if (!ConfirmRunningVms(&progress)) return 0;
        progress.add(Str(StrId::PoweringOffVms));
        const char* const argv[] = {"powerOffVms", nullptr};
        const int status = RunCommand("/sbin/powerOffVms", argv, nullptr, nullptr, nullptr, nullptr,
                                      nullptr, 0, 0);
        network->DisableNetDumper();
        if (status == 0) {
            progress.done();
            AutoConfigure(progress, *network);
        } else {
            progress.failed();
            Platform::Log(LOG_ERR, "Powering off VMs failed");
        }
    }
    progress.waitForEnter(Footer::kOkJoined);
    return 1;
}

}  // namespace

RestoreNetworkDialog::RestoreNetworkDialog(Window* opener)
    : ConfirmDialog(opener, kSize, Str(StrId::RestoreNetworkFactorySettings),
                    Str(StrId::RestoreNetworkFactorySettingsHelp), Footer::kYesResetCancel,
                    ConfirmDialog::F11()) {
    setQuestion(Str(StrId::ResetNetworkAreYouSure));
}

int RestoreNetworkDialog::run() {
    if (ConfirmDialog::run() != kYes) return 0;
    DoRestoreNetworkDialog restore(this);
    Run(restore);
    Platform::Log(LOG_INFO, "Restoring factory network settings");
    if (InitNoxUserLib() == 0) {
        NoxUserLib_AddNox("%snox.user.tesk.factory.network.restored)%s", kNoxMarker,
                          "Restoring factory network settings");
        NoxUserLib_Close();
    }
    return 1;
}

DoRestoreNetworkDialog::DoRestoreNetworkDialog(Window* opener)
    : ProgressDialog(opener, kSize, Str(StrId::RestoreNetworkSettingsTitle),
                     Str(StrId::FactoryNetworkRestoreWait), Restore) {}

}  // namespace Tesk
