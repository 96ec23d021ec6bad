// The login dialogs: password or smart-card PIN login, and the refusal shown
// when console login is switched off.
#pragma once

#include <string>

#include "hostctl/backend.h"
#include "ui/confirm_dialog.h"
#include "ui/form_dialog.h"
#include "ui/items.h"

namespace Tesk {

class Session;

// run(): 1 when a user has been authenticated, 0 when the user pressed <Esc>.
class LoginDialog : public FormDialog {
public:
    // A successful login is recorded in session.
    LoginDialog(Window* opener, Session& session);
    ~LoginDialog() override;
    // The user name being tried.
    const std::string& user() const { return user_; }
    bool pinMode() const { return pinMode_; }

protected:
    KeyResult onKey(int key) override;
    // <Enter> on the password: authenticates.
    KeyResult accept() override;

private:
    void layout();
    bool authenticate();
    InputItem& passwordInput() { return *password_; }
    bool onLastItem();

    Session& session_;
    LabelItem* keyboard_ = nullptr;  // only on the local console
    InputItem* login_ = nullptr;
    InputItem* password_ = nullptr;
    bool pinMode_ = false;
    std::string user_;
};

// Says that console login is switched off; <Enter> or <Esc> closes it, run()
// returns 0.
class LoginDisabledDialog : public ConfirmDialog {
public:
    LoginDisabledDialog(Window* opener, const HostCtl::Backend& host);
};

}  // namespace Tesk
