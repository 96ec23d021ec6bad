#include "admin/lockdown_dialog.h"

#include "hostctl/exception.h"
#include "platform/syslog.h"
#include "ui/footers.h"
#include "ui/items.h"
#include "ui/string_ids.h"

namespace Tesk {

namespace {

constexpr DialogSize kSize{70, 11, 6};

}  // namespace

LockdownDialog::LockdownDialog(Window* opener, const HostCtl::Backend& host)
    : FormDialog(opener, kSize), host_(host) {
    setTitle(str(StrId::ConfigureLockdownModeTitle));
    setBody(str(StrId::LockdownModeHelp));
    setFooter(Footer::kToggleOkCancel);
    enabled_ = host_.GetLockdownMode()->IsEnabled();
    check_ = &items().emplace<CheckItem>(str(StrId::EnableLockdownMode), enabled_);
}

KeyResult LockdownDialog::accept() {
    const bool wanted = check_->checked();
    if (wanted == enabled_) return KeyResult::Leave(enabled_ ? 1 : 0);
    if (switchLockdown(wanted)) enabled_ = wanted;
    return KeyResult::Leave(1);
}

bool LockdownDialog::switchLockdown(bool enter) {
    try {
        host_.GetLockdownMode()->SetEnabled(enter);
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Platform::Log(LOG_ERR,
                      enter ? "Enabling lockdown mode failed with error: %s"
                            : "Disabling lockdown mode failed with error: %s",
                      e.what());
        return false;
    }
    Platform::Log(LOG_INFO, enter ? "Lockdown mode enabled" : "Lockdown mode disabled");
    return true;
}

}  // namespace Tesk
