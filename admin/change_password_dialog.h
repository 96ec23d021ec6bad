// Changing a user's password: the old one checked, the new one typed twice,
// changed through PAM, then stored persistently and announced to the
// management agent.
#pragma once

#include <string>

#include "host/host_context.h"
#include "ui/confirm_dialog.h"
#include "ui/form_dialog.h"

namespace Tesk {

class InputItem;

// run(): 1 when the password was changed, 0 on <Esc>.
class ChangePasswordDialog : public FormDialog {
public:
    // Changes the password of host's user, on host.
    ChangePasswordDialog(Window* opener, const HostContext& host);
    ~ChangePasswordDialog() override;

protected:
    KeyResult onKey(int key) override;
    // <Enter> reaches accept() only when no field had it: nothing to do.
    KeyResult accept() override { return KeyResult::Handled(); }

private:
    // <Down>, <Tab> or <Enter> on the old password: checks it.
    KeyResult checkOldPassword();
    // <Enter> on the confirmation: the new password is checked and set.
    KeyResult submit();
    // Stores the accounts and tells the agent, the logs and the event service.
    void announce();
    void showError(std::uint32_t textId);

    const HostContext& host_;
    InputItem* old_ = nullptr;
    InputItem* new_ = nullptr;
    InputItem* confirm_ = nullptr;
};

// "New password is same as old password. Are you sure?": 1 on <Enter>, 0 on <Esc>.
class SamePasswordConfirmDialog : public ConfirmDialog {
public:
    explicit SamePasswordConfirmDialog(Window* opener);
};

}  // namespace Tesk
