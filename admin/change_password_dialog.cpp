#include "admin/change_password_dialog.h"

#include <security/pam_appl.h>

#include "admin/pam_auth.h"
#include "hostctl/exception.h"
#include "platform/events.h"
#include "platform/syslog.h"
#include "ui/footers.h"
#include "ui/input_items.h"
#include "ui/keys.h"
#include "ui/string_ids.h"

namespace Tesk {

namespace {

constexpr DialogSize kSize{60, 14, 6};
constexpr DialogSize kSameSize{70, 8, 5};
constexpr int kFieldWidth = 30;

}  // namespace

ChangePasswordDialog::ChangePasswordDialog(Window* opener, const HostContext& host)
    : FormDialog(opener, kSize), host_(host) {
    setTitle(str(StrId::ConfigurePasswordTitle));
    setBody(str(StrId::SettingPasswordHelp));
    setFooter(Footer::kOkCancel);
    old_ = &items().emplace<MaskedInputItem>(str(StrId::OldPassword), "", kFieldWidth);
    new_ = &items().emplace<MaskedInputItem>(str(StrId::NewPassword), "", kFieldWidth);
    confirm_ = &items().emplace<MaskedInputItem>(str(StrId::ConfirmPassword), "", kFieldWidth);
    items().selectByOrdinal(0);
}

ChangePasswordDialog::~ChangePasswordDialog() {
    old_->wipe();
    new_->wipe();
    confirm_->wipe();
}

// The fields take their editing keys first; the dialog moves between them.
KeyResult ChangePasswordDialog::onKey(int key) {
    const Item* field = items().selected();
    if (key == KEY_UP) {
        // Only the confirmation goes back.
        if (field == confirm_) items().moveUp();
        return field == confirm_ ? KeyResult::Redraw() : KeyResult::Handled();
    }
    if (key != KEY_DOWN && key != KeyTab && key != KeyEnter) return KeyResult::Ignored();
    if (field == old_) return checkOldPassword();
    if (field == new_) {
        items().moveDown();
        return KeyResult::Redraw();
    }
    if (key == KeyTab) {
        items().moveUp();
        return KeyResult::Redraw();
    }
    return key == KeyEnter ? submit() : KeyResult::Handled();
}

KeyResult ChangePasswordDialog::checkOldPassword() {
    std::string password = old_->value();
    const int status = PamLoginCheck(host_.user, password);
    Wipe(password);
    // An expired password is still the right one.
    if (status == PAM_SUCCESS || status == PAM_NEW_AUTHTOK_REQD) {
        items().moveDown();
    } else {
        showError(StrId::OldPasswordIncorrect);
        old_->wipe();
    }
    return KeyResult::Redraw();
}

KeyResult ChangePasswordDialog::submit() {
    if (new_->value() != confirm_->value()) {
        showError(StrId::PasswordsDoNotMatch);
        new_->wipe();
        confirm_->wipe();
        return KeyResult::Redraw();
    }
    if (new_->value().empty()) {
        showError(StrId::EmptyPasswordsNotAllowed);
        return KeyResult::Redraw();
    }
    if (new_->value() == old_->value()) {
        SamePasswordConfirmDialog same(this);
        if (Run(same) != 1) return KeyResult::Redraw();
    }
    if (!PamChangePassword(host_.user, old_->value(), new_->value())) {
        showError(StrId::PasswordChangeFailed);
        new_->wipe();
        confirm_->wipe();
        return KeyResult::Redraw();
    }
    announce();
    return KeyResult::Leave(1);
}

void ChangePasswordDialog::announce() {
    try {
        host_.backend.StoreUserAccountsToCs();
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Platform::Log(LOG_ERR, "Storing user accounts failed: %s", e.what());
        MessageDialog failed(this, StrId::ConfigurePasswordWarning, StrId::StoringAccountsFailed);
        Run(failed);
    }
    host_.backend.GetHostConfiguration()->Backup();
    host_.backend.GetManagementAgents()->Refresh(host_.user);
    PostEvent(LOG_INFO, "Login password for user " + host_.user + " has changed", nullptr,
              "@&!*@*@(nox.user.tesk.login.passwd.changed)Login password for user %s changed",
              host_.user.c_str());
}

void ChangePasswordDialog::showError(std::uint32_t textId) {
    MessageDialog message(this, StrId::ConfigurePasswordError, textId);
    Run(message);
}

SamePasswordConfirmDialog::SamePasswordConfirmDialog(Window* opener)
    : ConfirmDialog(opener, kSameSize, Str(StrId::ConfigurePasswordWarning),
                    Str(StrId::SamePasswordAreYouSure), Footer::kEnterConfirmCancel,
                    ConfirmDialog::Enter()) {}

}  // namespace Tesk
