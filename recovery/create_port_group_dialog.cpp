// The port group creation: the form, its checks and the host's port group
// creation.
#include "recovery/create_port_group_dialog.h"

#include <syslog.h>

#include <algorithm>

#include "host/queries.h"
#include "hostctl/try_call.h"
#include "platform/syslog.h"
#include "recovery/names.h"
#include "ui/markup_escape.h"
#include "ui/string_ids.h"

namespace Tesk {

namespace {

// Whether the name can be given to a new port group.
bool FreePortGroupName(const HostCtl::Backend& backend, const std::string& name) {
    if (!ValidPortGroupName(name)) return false;
    const auto taken = TryHost("Looking up port group failed: %s",
                               [&] { return backend.GetPortGroup(name)->IsValidPortGroup(); });
    return taken && !*taken;
}

}  // namespace

CreatePortGroupDialog::CreatePortGroupDialog(Window* opener, const HostContext& host)
    : FormDialog(opener, {70, 19, 7}), host_(host) {
    setTitle(str(StrId::CreatePortGroup));
    setBody(str(StrId::CreatePortGroupPropertiesHelp));
    setFooter(Footer::kSelectMarkOkCancel);
    name_ = &items().emplace<InputItem>(str(StrId::PortGroupName), "", 32);
    items().emplace<LabelItem>("");
    items().emplace<LabelItem>("Standard switch:");
    std::vector<SwitchSummary> switches;
    GetStandardSwitches(host.backend, switches);
    for (const auto& s : switches) {
        switchNames_.push_back(s.name);
        items().emplace<RadioItem>(EscapeHostText(s.name), switchNames_.size() == 1, &switches_);
    }
    if (switchNames_.empty()) items().emplace<LabelItem>("No standard switches present");
}

int CreatePortGroupDialog::run() {
    for (;;) {
        if (FormDialog::run() != 1) return 0;
        const std::string name = name_->value();
        if (switchNames_.empty()) {
            Platform::Log(LOG_ERR, "Create port group: no standard switch to add it to");
            MessageDialog failed(this, StrId::OperationFailed, StrId::CheckSyslog);
            Run(failed);
            return 0;
        }
        const std::string& vswitch =
            switchNames_[static_cast<std::size_t>(std::max(switches_.chosenIndex(), 0))];
        if (!FreePortGroupName(host_.backend, name)) {
            Platform::Log(LOG_ERR, "Create port group: name '%s' refused", name.c_str());
            MessageDialog refused(this, StrId::InvalidArgument, StrId::EnterValidPortGroupName);
            Run(refused);
            continue;
        }
        if (!host_.backend.GetPortGroupCreator()->CreatePortGroup(name, vswitch)) {
            Platform::Log(LOG_ERR, "Creating port group %s on standard switch %s failed",
                          name.c_str(), vswitch.c_str());
            MessageDialog failed(this, StrId::OperationFailed, StrId::CheckSyslog);
            Run(failed);
            return 0;
        }
        Platform::Log(LOG_INFO, "Created port group %s on standard switch %s", name.c_str(),
                      vswitch.c_str());
        MessageDialog succeeded(this, str(StrId::OperationSucceeded),
                                str(StrId::CreatedPortGroup) + EscapeHostText(name));
        Run(succeeded);
        return 1;
    }
}

}  // namespace Tesk
