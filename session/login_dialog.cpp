#include "session/login_dialog.h"

#include <security/pam_appl.h>

#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "platform/events.h"
#include "platform/syslog.h"
#include "session/host_identity.h"
#include "session/pam_login.h"
#include "session/session.h"
#include "ui/footers.h"
#include "ui/keyreader.h"
#include "ui/keys.h"

namespace Tesk {

namespace {

constexpr int kWidth = 60;
constexpr int kHeight = 13;
constexpr int kUpperHeight = 6;
constexpr int kFieldWidth = 30;

std::string KeyboardLabel() {
    std::string layout;
    try {
        layout = HostCtl::TheBackend().GetSystemInfo()->GetKeyboardLayout();
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Platform::Log(LOG_ERR, "Getting keyboard layout failed: %s", e.what());
    }
    return "Configured Keyboard (" + layout + ")";
}

bool IsEditingKey(int key) {
    return (key >= 32 && key < 127) || key == KEY_DC || key == KeyBackspaceByte ||
           key == KEY_BACKSPACE || key == KEY_LEFT || key == KEY_RIGHT || key == KEY_HOME ||
           key == KEY_END;
}

}  // namespace

LoginDialog::LoginDialog(Window* opener, Session& session)
    : Dialog(opener, kWidth, kHeight, kUpperHeight),
      session_(session),
      list_(itemArea(), 0, 0, itemArea()->width(), itemArea()->height()) {
    if (session_.localConsole()) keyboard_ = &list_.emplace<LabelItem>(KeyboardLabel(), true);
    login_ = &list_.emplace<InputItem>(str(147), "root", kFieldWidth);
    password_ = &list_.emplace<InputItem>(str(149), "", kFieldWidth);
    password_->setMasked(true);
    setTitle(str(142));
    session_.checkCard();
    pinMode_ = !session_.detectedCardUserId().empty();
    layout();
}

LoginDialog::~LoginDialog() {
    password_->wipe();
}

void LoginDialog::layout() {
    if (pinMode_) {
        setBody(HostMessage(str(144)));
        setFooter(Footer::kLoginSwitchOkCancel);
        login_->setLabel(str(148));
        login_->setValue(session_.detectedCardUserId());
        password_->setLabel(str(150));
    } else {
        setBody(HostMessage(str(143)));
        setFooter(Footer::kOkCancel);
        login_->setLabel(str(147));
        login_->setValue("root");
        password_->setLabel(str(149));
    }
    password_->wipe();
    // With the id read from a card only the PIN is left to type.
    const bool idKnown = pinMode_ && !login_->value().empty();
    list_.selectByOrdinal((keyboard_ ? 1 : 0) + (idKnown ? 1 : 0));
    list_.draw();
}

bool LoginDialog::onLastItem() {
    return list_.selected() == password_;
}

int LoginDialog::run() {
    list_.draw();
    redraw();
    for (;;) {
        int key = ReadKey(this, true);
        Item* item = list_.selected();
        if (key == KEY_DOWN) {
            list_.moveDown();
        } else if (key == KEY_UP) {
            list_.moveUp();
        } else if (key == KEY_F(3)) {
            pinMode_ = !pinMode_;
            layout();
        } else if (key == KeyEscape) {
            return 0;
        } else if (IsEditingKey(key)) {
            if (item == login_ || item == password_) static_cast<InputItem*>(item)->handleKey(key);
        } else if (key == KeyEnter && item == keyboard_ && keyboard_) {
            // The label shows the layout configured now.
            keyboard_->setLabel(KeyboardLabel());
        } else if ((key == KeyEnter || key == KeyTab) && !onLastItem()) {
            list_.moveDown();
        } else if (key == KeyTab) {
            list_.selectByOrdinal(0);
        } else if (key == KeyEnter) {
            if (authenticate()) return 1;
        } else {
            continue;
        }
        list_.draw();
        redraw();
    }
}

bool LoginDialog::authenticate() {
    user_ = login_->value();
    std::string password = password_->value();
    int status = PamLoginCheck(user_, password);
    const char* user = user_.c_str();
    if (status == PAM_SUCCESS) {
        session_.loggedIn(user_, password.empty());
        Wipe(password);
        Platform::Log(LOG_AUTH | LOG_EMERG, "Authentication of user %s succeeded", user);
        AuditRecord audit{"tesk.login", user_, 1, {}};
        PostEvent(LOG_INFO, "User " + user_ + " logged in", &audit, nullptr);
        return true;
    }
    Wipe(password);
    std::uint32_t text = 152;
    if (status == PAM_PERM_DENIED) {
        AuditRecord audit{"tesk.login", user_, 0, {{"reason", "No permission"}}};
        PostEvent(LOG_AUTH | LOG_ERR, "Access denied for user " + user_, &audit,
                  "@&!*@*@(nox.user.tesk.login.failed)Access denied for user %s", user);
        text = 153;
    } else if (status == PAM_NEW_AUTHTOK_REQD) {
        AuditRecord audit{"tesk.login", user_, 0, {{"reason", "Password expired"}}};
        PostEvent(LOG_AUTH | LOG_ERR, "Password has expired for user " + user_, &audit,
                  "@&!*@*@(nox.user.tesk.login.failed)Access denied for user %s", user);
        text = 154;
    } else {
        AuditRecord audit{"tesk.login", user_, 0, {{"reason", "Invalid login"}}};
        PostEvent(LOG_AUTH | LOG_ERR, "Authentication of user " + user_ + " failed", &audit,
                  "@&!*@*@(nox.user.tesk.login.failed)Authentication of user %s failed", user);
    }
    MessageDialog message(this, 151, text);
    Run(message);
    // After an expired password the user logs in again from here.
    password_->wipe();
    password_->setMasked(true);
    return false;
}

LoginDisabledDialog::LoginDisabledDialog(Window* opener)
    : Dialog(opener, kWidth, 9, kUpperHeight) {}

int LoginDisabledDialog::run() {
    setTitle(str(145));
    setBody(HostMessage(str(146)));
    setFooter(Footer::kOk);
    redraw();
    for (;;) {
        int key = ReadKey(this, true);
        if (key == KeyEnter || key == KeyEscape) return 0;
    }
}

}  // namespace Tesk
