#include "session/login_dialog.h"

#include <security/pam_appl.h>

#include "admin/change_password_dialog.h"
#include "admin/keyboard_dialog.h"
#include "admin/pam_auth.h"
#include "host/host_context.h"
#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "hostctl/try_call.h"
#include "platform/events.h"
#include "platform/syslog.h"
#include "session/host_identity.h"
#include "session/session.h"
#include "ui/footers.h"
#include "ui/input_items.h"
#include "ui/keyreader.h"
#include "ui/keys.h"
#include "ui/markup_escape.h"
#include "ui/string_ids.h"

namespace Tesk {

namespace {

constexpr int kWidth = 60;
constexpr int kHeight = 13;
constexpr int kUpperHeight = 6;
constexpr int kFieldWidth = 30;

std::string KeyboardLabel(const HostCtl::Backend& host) {
    const std::string layout = TryHost("Getting keyboard layout failed: %s", [&host] {
                                   return host.GetSystemInfo()->GetKeyboardLayout();
                               }).value_or("");
    return "Configured Keyboard (" + EscapeHostText(layout) + ")";
}

}  // namespace

LoginDialog::LoginDialog(Window* opener, Session& session)
    : FormDialog(opener, kWidth, kHeight, kUpperHeight), session_(session) {
    if (session_.localConsole())
        keyboard_ = &items().emplace<LabelItem>(KeyboardLabel(session_.host()), true);
    // Both fields take every printable character, UTF-8 included: a user
    // name or password need not be ASCII.
    login_ = &items().emplace<InputItem>(str(StrId::LoginName), "root", kFieldWidth);
    password_ = &items().emplace<MaskedInputItem>(str(StrId::Password), "", kFieldWidth);
    setTitle(str(StrId::AuthenticationRequired));
    session_.checkCard();
    pinMode_ = !session_.detectedCardUserId().empty();
    layout();
}

LoginDialog::~LoginDialog() {
    password_->wipe();
}

void LoginDialog::layout() {
    if (pinMode_) {
        setBody(HostMessage(session_.host(), str(StrId::EnterSmartCardPin)));
        setFooter(Footer::kLoginSwitchOkCancel);
        login_->setLabel(str(StrId::LoginId));
        login_->setValue(session_.detectedCardUserId());
        password_->setLabel(str(StrId::Pin));
    } else {
        setBody(HostMessage(session_.host(), str(StrId::EnterLoginAndPassword)));
        setFooter(Footer::kOkCancel);
        login_->setLabel(str(StrId::LoginName));
        login_->setValue("root");
        password_->setLabel(str(StrId::Password));
    }
    password_->wipe();
    // With the id read from a card only the PIN is left to type.
    const bool idKnown = pinMode_ && !login_->value().empty();
    items().selectByOrdinal((keyboard_ ? 1 : 0) + (idKnown ? 1 : 0));
    items().draw();
}

bool LoginDialog::onLastItem() {
    return items().selected() == password_;
}

// The fields take their editing keys themselves; Up/Down and <Esc> are the
// form's defaults.
KeyResult LoginDialog::onKey(int key) {
    Item* item = items().selected();
    if (key == KEY_F(3)) {
        pinMode_ = !pinMode_;
        layout();
        return KeyResult::Redraw();
    }
    if (key == KeyEnter && keyboard_ && item == keyboard_) {
        KeyboardDialog dialog(this, session_.host());
        Run(dialog);
        // The label shows the layout configured now.
        keyboard_->setLabel(KeyboardLabel(session_.host()));
        return KeyResult::Redraw();
    }
    if (key != KeyEnter && key != KeyTab) return KeyResult::Ignored();
    // <Enter> and <Tab> move down to the last item; there <Tab> wraps round
    // and <Enter> authenticates.
    if (!onLastItem()) {
        items().moveDown();
    } else if (key == KeyTab) {
        items().selectByOrdinal(0);
    } else {
        return accept();
    }
    return KeyResult::Redraw();
}

KeyResult LoginDialog::accept() {
    return authenticate() ? KeyResult::Leave(1) : KeyResult::Redraw();
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
    std::uint32_t text = StrId::InvalidLoginOrPassword;
    if (status == PAM_PERM_DENIED) {
        AuditRecord audit{"tesk.login", user_, 0, {{"reason", "No permission"}}};
        PostEvent(LOG_AUTH | LOG_ERR, "Access denied for user " + user_, &audit,
                  "@&!*@*@(nox.user.tesk.login.failed)Access denied for user %s", user);
        text = StrId::NoPermissionToLogin;
    } else if (status == PAM_NEW_AUTHTOK_REQD) {
        AuditRecord audit{"tesk.login", user_, 0, {{"reason", "Password expired"}}};
        PostEvent(LOG_AUTH | LOG_ERR, "Password has expired for user " + user_, &audit,
                  "@&!*@*@(nox.user.tesk.login.failed)Access denied for user %s", user);
        text = StrId::PasswordExpired;
    } else {
        AuditRecord audit{"tesk.login", user_, 0, {{"reason", "Invalid login"}}};
        PostEvent(LOG_AUTH | LOG_ERR, "Authentication of user " + user_ + " failed", &audit,
                  "@&!*@*@(nox.user.tesk.login.failed)Authentication of user %s failed", user);
    }
    MessageDialog message(this, StrId::AuthenticationFailed, text);
    Run(message);
    if (status == PAM_NEW_AUTHTOK_REQD) {
        // The user sets a new password, then logs in with it from here.
        const HostContext expired{session_.host(), user_};
        ChangePasswordDialog change(this, expired);
        Run(change);
    }
    // After an expired password the user logs in again from here.
    password_->wipe();
    password_->setMasked(true);
    return false;
}

LoginDisabledDialog::LoginDisabledDialog(Window* opener, const HostCtl::Backend& host)
    : ConfirmDialog(opener, {kWidth, 9, kUpperHeight}, Str(StrId::AuthenticationDenied),
                    HostMessage(host, Str(StrId::ConsoleAccessDisabled)), Footer::kOk,
                    {{KeyEnter, 0}}) {}

}  // namespace Tesk
