// The question asked when the administrator leaves the management network
// window with changes: apply them (restarting the management network, or the
// host when IPv6 is switched on or off), leave without applying, or stay.
#pragma once

#include "ui/confirm_dialog.h"

namespace Tesk {

// <Y>/<y> yes, <N>/<n> no, <Esc> cancels; every other key is ignored.
class ApplyChangesDialog : public ConfirmDialog {
public:
    // reboot: the IPv6 on/off state is to change, so the host restarts.
    ApplyChangesDialog(Window* opener, bool reboot);

    // kYes, kNo, or kCancelled for <Esc>.
    int run() override;
    // What was answered; false before an answer and after <Esc>.
    bool answeredYes() const { return answer_ == kYes; }
    bool answeredNo() const { return answer_ == kNo; }

private:
    int answer_ = kCancelled;
};

}  // namespace Tesk
