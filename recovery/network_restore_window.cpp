// The network restore window: its rows, their enable rules, descriptions and
// footers, and the dialog each opens.
#include "recovery/network_restore_window.h"

#include <syslog.h>

#include "host/queries.h"
#include "host/runner.h"
#include "hostctl/exception.h"
#include "platform/syslog.h"
#include "recovery/create_port_group_dialog.h"
#include "recovery/create_vss_dialog.h"
#include "recovery/migrate_zrknic_dialog.h"
#include "recovery/restore_network_dialog.h"
#include "recovery/restore_qds_dialog.h"
#include "recovery/safe_mode_network.h"
#include "ui/footers.h"
#include "ui/string_ids.h"

namespace Tesk {

namespace {

// The footer of a row, by its id.
const char* RowFooter(std::uint32_t id) {
    switch (id) {
        case StrId::CreateStandardSwitch:
        case StrId::CreatePortGroup:
            return Footer::kCreateExit;
        case StrId::MigrateNicToStandardSwitch:
            return Footer::kMigrateExit;
        case StrId::RestoreNetworkSettings:
            return Footer::kRestartExitOpen;
        case StrId::RestoreStandardSwitch:
        case StrId::RestoreQds:
            return Footer::kRestoreExit;
        default:
            return "";
    }
}

// A dialog made over the window, run, and gone when it returns.
template <typename Dialog>
void OpenDialog(Window* window) {
    Dialog dialog(window);
    Run(dialog);
}

bool Known(std::uint32_t id) {
    return id >= StrId::CreateStandardSwitch && id <= StrId::RestoreQds;
}

}  // namespace

NetworkRestoreWindow::NetworkRestoreWindow(Window* opener) : PaneWindow(opener, Footer::kSelect) {
    setTitle(str(StrId::NetworkRestoreOptionsTitle));
    const bool onQds = IsManagementOnQds();
    const bool agentV3 = PlexOpsAgentV3Present();
    ids_ = {StrId::CreateStandardSwitch,       StrId::CreatePortGroup,
            StrId::MigrateNicToStandardSwitch, StrId::RestoreNetworkSettings,
            StrId::RestoreStandardSwitch,      StrId::RestoreQds};
    for (std::uint32_t id : ids_) addRow(str(id));
    if (!agentV3) disableRow(2);
    if (!onQds) {
        disableRow(4);
        disableRow(5);
    }
    selectRow(0);
}

void NetworkRestoreWindow::disableRow(int row) {
    setRowEnabled(row, false);
    setRowText(row, std::string("{color:dark-grey}") + str(ids_[static_cast<std::size_t>(row)]) +
                        "{/color}");
}

PaneText NetworkRestoreWindow::describe(int row) {
    if (row != describedRow_) {
        if (describedRow_ >= 0) ownFooter_ = false;
        describedRow_ = row;
    }
    const std::uint32_t id = ids_[static_cast<std::size_t>(row)];
    if (!Known(id)) return {};
    return {str(id + 6), ownFooter_ ? Footer::kChangeExitSpaced : RowFooter(id)};
}

void NetworkRestoreWindow::enter(int row) {
    switch (ids_[static_cast<std::size_t>(row)]) {
        case StrId::CreateStandardSwitch:
            OpenDialog<CreateVssDialog>(this);
            break;
        case StrId::CreatePortGroup:
            OpenDialog<CreatePortGroupDialog>(this);
            break;
        case StrId::MigrateNicToStandardSwitch:
            OpenDialog<MigrateZrknicDialog>(this);
            break;
        case StrId::RestoreNetworkSettings:
            restoreNetworkSettings();
            break;
        case StrId::RestoreStandardSwitch: {
            SafeModeNetworkDialog dialog(this);
            if (Run(dialog) == 1) disableRow(row);
            break;
        }
        case StrId::RestoreQds:
            RestoreQds(this);
            break;
        default:
            break;
    }
    // The window is drawn again as when it opened: its own footer until the
    // selection moves.
    describedRow_ = selectedRow();
    ownFooter_ = true;
}

void NetworkRestoreWindow::restoreNetworkSettings() {
    try {
        RestoreNetworkDialog dialog(this);
        Run(dialog);
    } catch (const HostCtl::Lib::HostCtlException& e) {
        // The dialogs were left by the failure: this window takes the screen
        // back before it says what happened.
        Platform::Log(LOG_ERR, "Restoring factory network settings failed: %s", e.what());
        setActive(true);
        MessageDialog failed(this, StrId::OperationFailed, StrId::CheckSyslog);
        Run(failed);
    }
}

}  // namespace Tesk
