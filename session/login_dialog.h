// The login dialogs: password or smart-card PIN login, and the refusal shown
// when console login is switched off.
#pragma once

#include <string>

#include "ui/dialog.h"
#include "ui/items.h"

namespace Tesk {

class Session;

class LoginDialog : public Dialog {
public:
    // A successful login is recorded in session.
    LoginDialog(Window* opener, Session& session);
    ~LoginDialog() override;
    // 1 when a user has been authenticated, 0 when the user pressed <Esc>.
    int run() override;
    // The user name being tried.
    const std::string& user() const { return user_; }
    bool pinMode() const { return pinMode_; }

private:
    void layout();
    bool authenticate();
    InputItem& passwordInput() { return *password_; }
    bool onLastItem();

    Session& session_;
    ItemList list_;
    LabelItem* keyboard_ = nullptr;  // only on the local console
    InputItem* login_ = nullptr;
    InputItem* password_ = nullptr;
    bool pinMode_ = false;
    std::string user_;
};

class LoginDisabledDialog : public Dialog {
public:
    explicit LoginDisabledDialog(Window* opener);
    // Always 0.
    int run() override;
};

}  // namespace Tesk
