// The standard switch creation: the form, its checks and the host's switch
// operations.
#include "recovery/create_vss_dialog.h"

#include <syslog.h>

#include "host/queries.h"
#include "hostctl/try_call.h"
#include "platform/syslog.h"
#include "recovery/names.h"
#include "ui/markup_escape.h"
#include "ui/string_ids.h"

namespace Tesk {

namespace {

namespace HN = HostCtl::Network;

// The new uplink carries the switch's traffic: it joins the active uplinks.
bool MakeActive(const HN::Portset& portset, const std::string& uplink) {
    return TryHost("Making the uplink active failed: %s", [&] {
        HN::NicTeamingPolicy policy = portset.GetTeamingPolicy();
        if (!policy.HasUplink(uplink)) policy.AddActiveUplink(uplink);
        portset.SetTeamingPolicy(policy);
    });
}

}  // namespace

CreateVssDialog::CreateVssDialog(Window* opener, const HostContext& host)
    : FormDialog(opener, {70, 19, 7}), host_(host) {
    setTitle(str(StrId::CreateStandardSwitch));
    setBody(str(StrId::CreateStandardSwitchPropertiesHelp));
    setFooter(Footer::kSelectMarkOkCancel);
    name_ = &items().emplace<InputItem>(str(StrId::SwitchName), "", 32);
    items().emplace<LabelItem>("");
    items().emplace<LabelItem>("Uplink:");
    items().emplace<RadioItem>("None", true, &uplinks_);
    GetPnicNames(host.backend, pnics_);
    UplinkOwnerMap owners;
    BuildUplinkOwnerMap(host.backend, pnics_, owners);
    for (const auto& pnic : pnics_) {
        std::string label = EscapeHostText(pnic);
        if (auto owner = owners.find(pnic); owner != owners.end())
            label += "  (used by " + EscapeHostText(owner->second) + ")";
        items().emplace<RadioItem>(label, false, &uplinks_);
    }
}

std::string CreateVssDialog::chosenUplink() const {
    const int index = uplinks_.chosenIndex();
    return index <= 0 ? std::string() : pnics_[static_cast<std::size_t>(index - 1)];
}

std::uint32_t CreateVssDialog::invalidInput(const std::string& name,
                                            const std::string& uplink) const {
    if (!ValidSwitchName(name)) return StrId::EnterValidStandardSwitchName;
    const auto taken = TryHost("Looking up virtual switch failed: %s", [&] {
        return host_.backend.GetPortset(name)->IsValidVirtualSwitch();
    });
    if (!taken || *taken) return StrId::EnterValidStandardSwitchName;
    if (uplink.empty()) return 0;
    UplinkOwnerMap owners;
    if (!BuildUplinkOwnerMap(host_.backend, {uplink}, owners) || owners.count(uplink))
        return StrId::UplinkAlreadyInUse;
    return 0;
}

int CreateVssDialog::run() {
    for (;;) {
        if (FormDialog::run() != 1) return 0;
        const std::string name = name_->value();
        const std::string uplink = chosenUplink();
        if (const std::uint32_t problem = invalidInput(name, uplink)) {
            Platform::Log(LOG_ERR, "Create standard switch: %s '%s' refused: %s",
                          problem == StrId::UplinkAlreadyInUse ? "uplink" : "name",
                          problem == StrId::UplinkAlreadyInUse ? uplink.c_str() : name.c_str(),
                          str(problem));
            MessageDialog refused(this, StrId::InvalidArgument, problem);
            Run(refused);
            continue;
        }
        if (!create(name, uplink)) {
            MessageDialog failed(this, StrId::OperationFailed, StrId::CheckSyslog);
            Run(failed);
            return 0;
        }
        Platform::Log(LOG_INFO, "Created standard switch %s with uplink %s", name.c_str(),
                      uplink.empty() ? "(none)" : uplink.c_str());
        MessageDialog succeeded(this, str(StrId::OperationSucceeded),
                                str(StrId::CreatedStandardSwitch) + EscapeHostText(name));
        Run(succeeded);
        return 1;
    }
}

bool CreateVssDialog::create(const std::string& name, const std::string& uplink) const {
    // The host's default number of ports, as the restore of the standard switch makes it.
    auto portset = TryHost("Adding virtual switch failed: %s", [&] {
        return host_.backend.GetVirtualSwitchInfo()->AddVirtualSwitch(name,
                                                                      HN::Portset::DEF_NUM_PORTS);
    });
    if (!portset) {
        Platform::Log(LOG_ERR, "Creating standard switch %s failed", name.c_str());
        return false;
    }
    if (uplink.empty()) return true;
    const bool linked =
        TryHost("Adding uplink failed: %s", [&] { (*portset)->AddUplink(uplink); }) &&
        MakeActive(**portset, uplink);
    if (!linked)
        Platform::Log(LOG_ERR, "Adding uplink %s to standard switch %s failed", uplink.c_str(),
                      name.c_str());
    return linked;
}

}  // namespace Tesk
