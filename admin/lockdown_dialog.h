// Switching the host's lockdown mode on or off through the management tool.
#pragma once

#include "ui/form_dialog.h"

namespace Tesk {

class CheckItem;

// run(): on <Enter> 1 when a lockdown command was run, otherwise whether
// lockdown is on; 0 on <Esc>. A failed command is logged with the tool's
// error text and changes nothing.
class LockdownDialog : public FormDialog {
public:
    explicit LockdownDialog(Window* opener);
    // The lockdown state as read when the dialog was made, or as the last
    // command left it.
    bool lockdownEnabled() const { return enabled_; }

protected:
    KeyResult accept() override;

private:
    // Runs the enter or exit command; true when the tool succeeded.
    bool switchLockdown(bool enter);

    CheckItem* check_ = nullptr;
    bool enabled_ = false;
};

}  // namespace Tesk
