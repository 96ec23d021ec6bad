// The distributed-switch repair: the port's properties, the uplinks, the new
// host-local port and the management interface's move.
#include "recovery/restore_qds_dialog.h"

#include <syslog.h>

#include <algorithm>

#include "host/queries.h"
#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "platform/syslog.h"
#include "ui/confirm_dialog.h"
#include "ui/markup_escape.h"
#include "ui/string_ids.h"

namespace Tesk {

namespace HN = HostCtl::Network;
using HostCtl::Lib::HostCtlException;

namespace {

std::string Joined(const std::vector<std::string>& names) {
    std::string out;
    for (const auto& n : names) out += (out.empty() ? "" : ",") + n;
    return out.empty() ? "none" : out;
}

}  // namespace

RestoreqDSDialog::RestoreqDSDialog(Window* opener) : FormDialog(opener, {70, 15, 7}) {
    setTitle(str(StrId::RestoreQdsTitle));
    setBody(str(StrId::RestoreQdsPropertiesHelp));
    setFooter(Footer::kSelectToggleOkCancel);
    vlan_ = &items().emplace<NumericInputItem>("VLAN ID (1-4094): ", "", 6, 4);
    items().emplace<LabelItem>("");
    unblock_ = &items().emplace<CheckItem>(str(StrId::RestoreDefaultBlockedSetting), false);
}

void RestoreqDSDialog::fail(std::uint32_t textId) {
    MessageDialog failed(this, StrId::RestoreQdsError, textId);
    Run(failed);
}

bool RestoreqDSDialog::locate() {
    try {
        management_ = GetManagementInterface();
        if (!management_) {
            Platform::Log(LOG_ERR, "Restore qDS: no management interface");
            fail(StrId::UnableToRestoreQds);
            return false;
        }
        const HN::ConnectionPoint point = management_->GetPortConnection();
        if (point.GetType() != HN::ConnectionType::QdsPort) {
            Platform::Log(LOG_ERR, "Restore qDS: %s is not on a distributed switch",
                          management_->GetName().c_str());
            fail(StrId::UnableToRestoreQds);
            return false;
        }
        qds_ = HostCtl::TheBackend().GetQdsSwitch(point.GetSwitchName());
        port_ = point.GetPortId();
        if (!qds_->IsOwnKind()) {
            Platform::Log(LOG_ERR,
                          "Restore qDS refused: distributed switch %s is not the host's own kind",
                          qds_->GetName().c_str());
            fail(StrId::UnableToRestoreThirdPartyQds);
            return false;
        }
        current_ = qds_->GetPortSettings(port_);
        uplinkMap_ = qds_->GetUplinkMap();
    } catch (const HostCtlException& e) {
        Platform::Log(LOG_ERR, "Restore qDS failed: %s", e.what());
        fail(StrId::UnableToRestoreQds);
        return false;
    }
    if (current_.vlanId >= 1 && current_.vlanId <= 4094)
        vlan_->setValue(std::to_string(current_.vlanId));
    return true;
}

std::optional<std::vector<std::string>> RestoreqDSDialog::chooseUplinks() {
    FormDialog form(this, {70, 16, 7});
    form.setTitle(str(StrId::QdsUplinks));
    form.setBody(str(StrId::SelectQdsUplinksHelp));
    form.setFooter(Footer::kSelectToggleOkCancel);
    form.items().emplace<LabelItem>(str(StrId::SelectQdsUplinks));
    std::vector<std::pair<CheckItem*, std::string>> checks;
    for (const auto& [pnic, port] : uplinkMap_)
        checks.emplace_back(&form.items().emplace<CheckItem>(
                                EscapeHostText(pnic) + " (" + EscapeHostText(port) + ")", false),
                            port);
    for (;;) {
        if (Run(form) != 1) return std::nullopt;
        std::vector<std::string> chosen;
        for (const auto& [check, port] : checks)
            if (check->checked()) chosen.push_back(port);
        if (!chosen.empty()) return chosen;
        ConfirmDialog none(&form, {60, 12, 7}, str(StrId::QdsUplinksWarning),
                           str(StrId::NoUplinksSelected), Footer::kEnterConfirmCancel,
                           ConfirmDialog::Enter());
        none.setQuestion(str(StrId::DoYouWantToContinue));
        if (Run(none) == ConfirmDialog::kYes) return chosen;
    }
}

bool RestoreqDSDialog::apply(std::uint16_t vlanId, const std::vector<std::string>& uplinks) {
    HN::QdsPortSettings settings = current_;
    settings.vlanId = vlanId;
    if (unblock_->checked()) settings.blocked = false;
    settings.activeUplinks = uplinks;
    std::erase_if(settings.standbyUplinks, [&](const std::string& u) {
        return std::find(uplinks.begin(), uplinks.end(), u) != uplinks.end();
    });
    try {
        const std::string id = qds_->AddHostLocalPort(settings);
        Platform::Log(
            LOG_INFO,
            "Restore qDS: created host-local port %s on %s (VLAN %u, %s, active uplinks %s) "
            "from port %s",
            id.c_str(), qds_->GetName().c_str(), static_cast<unsigned>(vlanId),
            settings.blocked ? "blocked" : "unblocked", Joined(uplinks).c_str(), port_.c_str());
        management_->ConnectToQdsPort(qds_->GetName(), id);
        Platform::Log(LOG_INFO, "Restore qDS: moved %s to port %s of %s",
                      management_->GetName().c_str(), id.c_str(), qds_->GetName().c_str());
        MessageDialog done(this, str(StrId::OperationSucceeded),
                           "Management interface " + EscapeHostText(management_->GetName()) +
                               " moved to port " + EscapeHostText(id) + " of " +
                               EscapeHostText(qds_->GetName()) + ".");
        Run(done);
        return true;
    } catch (const HostCtlException& e) {
        Platform::Log(LOG_ERR, "Restore qDS failed: %s", e.what());
        fail(StrId::UnableToRestoreQds);
        return false;
    }
}

int RestoreqDSDialog::run() {
    if (!locate()) return 0;
    for (;;) {
        if (FormDialog::run() != 1) return 0;
        const std::string& text = vlan_->value();
        const int vlan = text.empty() || text.size() > 4 ? 0 : std::stoi(text);
        if (vlan < 1 || vlan > 4094) {
            Platform::Log(LOG_ERR, "Restore qDS: VLAN ID '%s' refused", text.c_str());
            MessageDialog refused(this, StrId::InvalidArgument, StrId::EnterValidVlanId);
            Run(refused);
            continue;
        }
        if (uplinkMap_.empty()) {
            Platform::Log(LOG_ERR, "Restore qDS: no uplinks of %s on the host",
                          qds_->GetName().c_str());
            MessageDialog none(this, StrId::NoQdsUplinksError, StrId::NoUplinksConfigured);
            Run(none);
            return 0;
        }
        const auto uplinks = chooseUplinks();
        if (!uplinks) continue;
        return apply(static_cast<std::uint16_t>(vlan), *uplinks) ? 1 : 0;
    }
}

}  // namespace Tesk
