// The distributed-switch repair: the port's properties, the uplinks, the new
// host-local port and the management interface's move.
#include "recovery/restore_qds_dialog.h"

#include <syslog.h>

#include <algorithm>

#include "host/queries.h"
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
    const std::string joined = JoinNames(names);
    return joined.empty() ? "none" : joined;
}

}  // namespace

namespace {

void Refuse(Window* opener, std::uint32_t textId) {
    MessageDialog refused(opener, StrId::RestoreQdsError, textId);
    Run(refused);
}

}  // namespace

std::optional<QdsRepairTarget> LocateQdsRepair(Window* opener, const HostContext& host) {
    QdsRepairTarget t;
    try {
        t.management = GetManagementInterface(host.backend);
        if (!t.management) {
            Platform::Log(LOG_ERR, "Restore qDS: no management interface");
            Refuse(opener, StrId::UnableToRestoreQds);
            return std::nullopt;
        }
        const HN::ConnectionPoint point = t.management->GetPortConnection();
        if (point.GetType() != HN::ConnectionType::QdsPort) {
            Platform::Log(LOG_ERR, "Restore qDS: %s is not on a distributed switch",
                          t.management->GetName().c_str());
            Refuse(opener, StrId::UnableToRestoreQds);
            return std::nullopt;
        }
        t.qds = host.backend.GetQdsSwitch(point.GetSwitchName());
        t.port = point.GetPortId();
        if (!t.qds->IsOwnKind()) {
            Platform::Log(LOG_ERR,
                          "Restore qDS refused: distributed switch %s is not the host's own kind",
                          t.qds->GetName().c_str());
            Refuse(opener, StrId::UnableToRestoreThirdPartyQds);
            return std::nullopt;
        }
        t.current = t.qds->GetPortSettings(t.port);
        t.uplinks = t.qds->GetUplinkMap();
    } catch (const HostCtlException& e) {
        Platform::Log(LOG_ERR, "Restore qDS failed: %s", e.what());
        Refuse(opener, StrId::UnableToRestoreQds);
        return std::nullopt;
    }
    return t;
}

int RestoreQds(Window* opener, const HostContext& host) {
    auto target = LocateQdsRepair(opener, host);
    if (!target) return 0;
    RestoreqDSDialog dialog(opener, std::move(*target));
    return Run(dialog);
}

RestoreqDSDialog::RestoreqDSDialog(Window* opener, QdsRepairTarget target)
    : FormDialog(opener, {70, 15, 7}), target_(std::move(target)) {
    setTitle(str(StrId::RestoreQdsTitle));
    setBody(str(StrId::RestoreQdsPropertiesHelp));
    setFooter(Footer::kSelectToggleOkCancel);
    const std::uint16_t vlan = target_.current.vlanId;
    vlan_ = &items().emplace<NumericInputItem>(
        "VLAN ID (1-4094): ", vlan >= 1 && vlan <= 4094 ? std::to_string(vlan) : "", 6, 4);
    items().emplace<LabelItem>("");
    unblock_ = &items().emplace<CheckItem>(str(StrId::RestoreDefaultBlockedSetting), false);
}

void RestoreqDSDialog::fail(std::uint32_t textId) {
    Refuse(this, textId);
}

std::optional<std::vector<std::string>> RestoreqDSDialog::chooseUplinks() {
    FormDialog form(this, {70, 16, 7});
    form.setTitle(str(StrId::QdsUplinks));
    form.setBody(str(StrId::SelectQdsUplinksHelp));
    form.setFooter(Footer::kSelectToggleOkCancel);
    form.items().emplace<LabelItem>(str(StrId::SelectQdsUplinks));
    std::vector<std::pair<CheckItem*, std::string>> checks;
    for (const auto& [pnic, port] : target_.uplinks)
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
    HN::QdsPortSettings settings = target_.current;
    settings.vlanId = vlanId;
    if (unblock_->checked()) settings.blocked = false;
    settings.activeUplinks = uplinks;
    std::erase_if(settings.standbyUplinks, [&](const std::string& u) {
        return std::find(uplinks.begin(), uplinks.end(), u) != uplinks.end();
    });
    try {
        const std::string id = target_.qds->AddHostLocalPort(settings);
        Platform::Log(
            LOG_INFO,
            "Restore qDS: created host-local port %s on %s (VLAN %u, %s, active uplinks %s) "
            "from port %s",
            id.c_str(), target_.qds->GetName().c_str(), static_cast<unsigned>(vlanId),
            settings.blocked ? "blocked" : "unblocked", Joined(uplinks).c_str(),
            target_.port.c_str());
        target_.management->ConnectToQdsPort(target_.qds->GetName(), id);
        Platform::Log(LOG_INFO, "Restore qDS: moved %s to port %s of %s",
                      target_.management->GetName().c_str(), id.c_str(),
                      target_.qds->GetName().c_str());
        MessageDialog done(this, str(StrId::OperationSucceeded),
                           "Management interface " + EscapeHostText(target_.management->GetName()) +
                               " moved to port " + EscapeHostText(id) + " of " +
                               EscapeHostText(target_.qds->GetName()) + ".");
        Run(done);
        return true;
    } catch (const HostCtlException& e) {
        Platform::Log(LOG_ERR, "Restore qDS failed: %s", e.what());
        fail(StrId::UnableToRestoreQds);
        return false;
    }
}

int RestoreqDSDialog::run() {
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
        if (target_.uplinks.empty()) {
            Platform::Log(LOG_ERR, "Restore qDS: no uplinks of %s on the host",
                          target_.qds->GetName().c_str());
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
