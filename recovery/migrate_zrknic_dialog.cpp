// The Zerkel NIC migration: the two choices and the agent's migration.
#include "recovery/migrate_zrknic_dialog.h"

#include <syslog.h>

#include "platform/syslog.h"
#include "ui/markup_escape.h"
#include "ui/string_ids.h"

namespace Tesk {

MigrateZrknicDialog::MigrateZrknicDialog(Window* opener, const HostContext& host)
    : FormDialog(opener, {70, 14, 7}), host_(host) {
    setTitle(str(StrId::MigrateNicToStandardSwitch));
    setBody(str(StrId::ChooseNicToMigrate));
    setFooter(Footer::kDetailsChangeOkCancel);
    std::vector<ZrkNicInfo> nics;
    LoadZrkNicInfos(host.backend, nics);
    std::vector<PortGroupInfo> portGroups;
    LoadPortGroupInfos(host.backend, portGroups);
    nics_ = &items().emplace<CarouselRadioItem<ZrkNicInfo>>(std::move(nics), true, &nicGroup_);
    portGroups_ = &items().emplace<CarouselRadioItem<PortGroupInfo>>(std::move(portGroups), true,
                                                                     &portGroupGroup_);
}

KeyResult MigrateZrknicDialog::onKey(int key) {
    if (key != 'd' && key != 'D') return KeyResult::Ignored();
    if (items().selected() == nics_) nics_->showDetails(this);
    if (items().selected() == portGroups_) portGroups_->showDetails(this);
    return KeyResult::Redraw();
}

int MigrateZrknicDialog::run() {
    if (FormDialog::run() != 1) return 0;
    if (nics_->empty() || portGroups_->empty()) {
        Platform::Log(LOG_ERR, "Migrate Zerkel NIC: no %s to choose",
                      nics_->empty() ? "Zerkel NIC" : "port group");
        MessageDialog refused(this, StrId::InvalidArgument, StrId::ChooseNicToMigrate);
        Run(refused);
        return 0;
    }
    const std::string nic = nics_->current().name;
    const std::string portGroup = portGroups_->current().name;
    if (!host_.backend.GetOperationsAgent()->MigrateZrkNic(nic, portGroup)) {
        Platform::Log(LOG_ERR, "Migrating Zerkel NIC %s to port group %s failed", nic.c_str(),
                      portGroup.c_str());
        MessageDialog failed(this, StrId::OperationFailed, StrId::CheckSyslog);
        Run(failed);
        return 0;
    }
    Platform::Log(LOG_INFO, "Migrated Zerkel NIC %s to port group %s", nic.c_str(),
                  portGroup.c_str());
    MessageDialog succeeded(this, str(StrId::OperationSucceeded),
                            "Zerkel NIC " + EscapeHostText(nic) + " migrated to port group " +
                                EscapeHostText(portGroup));
    Run(succeeded);
    return 1;
}

}  // namespace Tesk
