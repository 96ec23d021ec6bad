// "Configure Password": the state of the root password; <Enter> changes it.
#include "admin/change_password_dialog.h"
#include "session/menu/menu_entry.h"
#include "session/session.h"
#include "ui/dialog.h"
#include "ui/footers.h"
#include "ui/string_ids.h"

namespace Tesk {
namespace {

class PasswordEntry : public MenuEntry {
public:
    std::string title(MenuContext& c) const override {
        return c.menu.str(StrId::ConfigurePassword);
    }
    std::string pane(MenuContext& c) override {
        return std::string(
                   c.menu.str(c.session.emptyPasswordLogin() ? StrId::NotSet : StrId::Set)) +
               "\n\n" + c.menu.str(StrId::ConfigurePasswordHelp);
    }
    std::string footer(MenuContext&) override { return Footer::kChangeLogOut; }
    void open(MenuContext& c) override {
        ChangePasswordDialog dialog(&c.menu, c.host);
        // Empty passwords are refused, so the new one never is.
        if (Run(dialog) == 1) c.session.setEmptyPasswordLogin(false);
    }
};

}  // namespace

std::unique_ptr<MenuEntry> MakePasswordEntry() {
    return std::make_unique<PasswordEntry>();
}

}  // namespace Tesk
