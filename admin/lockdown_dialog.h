// Switching the host's lockdown mode on or off.
#pragma once

#include "hostctl/backend.h"
#include "ui/form_dialog.h"

namespace Tesk {

class CheckItem;

// run(): on <Enter> 1 when lockdown was asked to change, otherwise whether
// lockdown is on; 0 on <Esc>. A refused change is logged with the host's
// error text and changes nothing.
class LockdownDialog : public FormDialog {
public:
    LockdownDialog(Window* opener, const HostCtl::Backend& host);
    // The lockdown state as read when the dialog was made, or as the last
    // change left it.
    bool lockdownEnabled() const { return enabled_; }

protected:
    KeyResult accept() override;

private:
    // Enters or leaves lockdown mode; true when the host did.
    bool switchLockdown(bool enter);

    const HostCtl::Backend& host_;
    CheckItem* check_ = nullptr;
    bool enabled_ = false;
};

}  // namespace Tesk
