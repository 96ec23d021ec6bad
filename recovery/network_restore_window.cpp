// The network restore window: its rows, their enable rules, descriptions and
// footers, and the dialog each opens.
#include "recovery/network_restore_window.h"

#include <syslog.h>

#include <algorithm>
#include <cstdint>
#include <utility>

#include "host/queries.h"
#include "hostctl/exception.h"
#include "platform/syslog.h"
#include "recovery/create_port_group_dialog.h"
#include "recovery/create_vss_dialog.h"
#include "recovery/migrate_zrknic_dialog.h"
#include "recovery/restore_network_dialog.h"
#include "recovery/restore_qds_dialog.h"
#include "recovery/safe_mode_network.h"
#include "ui/dialog.h"
#include "ui/footers.h"
#include "ui/markup_escape.h"
#include "ui/string_ids.h"
#include "ui/strings.h"
#include "ui/utf8.h"

namespace Tesk {

namespace {

// A dialog made over the window, run, and gone when it returns.
template <typename Dialog>
void OpenDialog(Window* window, const HostContext& host) {
    Dialog dialog(window, host);
    Run(dialog);
}

}  // namespace

struct NetworkRestoreWindow::Row {
    enum class Needs { Nothing, AgentV3, ManagementOnQds, SecondSwitch };
    std::uint32_t id;
    const char* footer;
    Needs needs;
    void (NetworkRestoreWindow::*open)(int row);
};

const std::vector<NetworkRestoreWindow::Row>& NetworkRestoreWindow::Rows() {
    using W = NetworkRestoreWindow;
    using N = Row::Needs;
    static const std::vector<Row> rows = {
        {StrId::CreateStandardSwitch, Footer::kCreateExit, N::SecondSwitch,
         &W::createStandardSwitch},
        {StrId::CreatePortGroup, Footer::kCreateExit, N::SecondSwitch, &W::createPortGroup},
        {StrId::MigrateNicToStandardSwitch, Footer::kMigrateExit, N::AgentV3, &W::migrateZrknic},
        {StrId::RestoreNetworkSettings, Footer::kRestartExitOpen, N::Nothing,
         &W::restoreNetworkSettings},
        {StrId::RestoreStandardSwitch, Footer::kRestoreExit, N::ManagementOnQds,
         &W::restoreStandardSwitch},
        {StrId::RestoreQds, Footer::kRestoreExit, N::ManagementOnQds, &W::restoreQds},
    };
    return rows;
}

NetworkRestoreWindow::NetworkRestoreWindow(Window* opener, const HostContext& host)
    // The list is as wide as the longest row name, so that it shows whole.
    : PaneWindow(opener, Footer::kSelect, {},
                 [] {
                     int widest = 0;
                     for (const Row& row : Rows())
                         widest = std::max(widest, Utf8::TextColumns(Str(row.id)));
                     return widest;
                 }()),
      host_(host) {
    setTitle(str(StrId::NetworkRestoreOptionsTitle));
    const bool onQds = IsManagementOnQds(host.backend);
    const bool agentV3 = host.backend.GetOperationsAgent()->IsVersion3Present();
    const std::string noSecondSwitch =
        host.backend.WhyNotOffered(HostCtl::Feature::SecondStandardSwitch);
    for (const Row& row : Rows()) addRow(str(row.id));
    notOffered_.resize(Rows().size());
    for (int i = 0; i < rowCount(); ++i) {
        const Row::Needs needs = Rows()[static_cast<std::size_t>(i)].needs;
        if (needs == Row::Needs::SecondSwitch)
            notOffered_[static_cast<std::size_t>(i)] = noSecondSwitch;
        if ((needs == Row::Needs::AgentV3 && !agentV3) ||
            (needs == Row::Needs::ManagementOnQds && !onQds))
            disableRow(i);
        // Grey too, but it can be selected: its pane says why.
        if (!notOffered_[static_cast<std::size_t>(i)].empty()) greyRow(i);
    }
    selectRow(0);
}

void NetworkRestoreWindow::disableRow(int row) {
    setRowEnabled(row, false);
    greyRow(row);
}

void NetworkRestoreWindow::greyRow(int row) {
    setRowText(row, std::string("{color:dark-grey}") +
                        str(Rows()[static_cast<std::size_t>(row)].id) + "{/color}");
}

PaneText NetworkRestoreWindow::describe(int row) {
    if (row != describedRow_) {
        if (describedRow_ >= 0) ownFooter_ = false;
        describedRow_ = row;
    }
    const Row& r = Rows()[static_cast<std::size_t>(row)];
    std::string text = str(r.id + 6);
    const std::string& reason = notOffered_[static_cast<std::size_t>(row)];
    if (!reason.empty()) text += "\n\n" + EscapeHostText(reason);
    return {std::move(text), ownFooter_ ? Footer::kChangeExitSpaced : r.footer};
}

void NetworkRestoreWindow::enter(int row) {
    if (!notOffered_[static_cast<std::size_t>(row)].empty()) return;
    (this->*Rows()[static_cast<std::size_t>(row)].open)(row);
    // The window is drawn again as when it opened: its own footer until the
    // selection moves.
    describedRow_ = selectedRow();
    ownFooter_ = true;
}

void NetworkRestoreWindow::createStandardSwitch(int) {
    OpenDialog<CreateVssDialog>(this, host_);
}

void NetworkRestoreWindow::createPortGroup(int) {
    OpenDialog<CreatePortGroupDialog>(this, host_);
}

void NetworkRestoreWindow::migrateZrknic(int) {
    OpenDialog<MigrateZrknicDialog>(this, host_);
}

void NetworkRestoreWindow::restoreNetworkSettings(int) {
    try {
        RestoreNetworkDialog dialog(this, host_);
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

void NetworkRestoreWindow::restoreStandardSwitch(int row) {
    SafeModeNetworkDialog dialog(this, host_);
    if (Run(dialog) == 1) disableRow(row);
}

void NetworkRestoreWindow::restoreQds(int) {
    RestoreQds(this, host_);
}

}  // namespace Tesk
