// "Configure Password": the state of the root password.
#include "session/menu/menu_entry.h"
#include "session/session.h"
#include "ui/dialog.h"
#include "ui/footers.h"

namespace Tesk {
namespace {

class PasswordEntry : public MenuEntry {
public:
    std::string title(MenuContext& c) const override { return c.menu.str(5); }
    std::string pane(MenuContext& c) override {
        return std::string(c.menu.str(c.session.emptyPasswordLogin() ? 118 : 117)) + "\n\n" +
               c.menu.str(21);
    }
    std::string footer(MenuContext&) override { return Footer::kChangeLogOut; }
};

}  // namespace

std::unique_ptr<MenuEntry> MakePasswordEntry() {
    return std::make_unique<PasswordEntry>();
}

}  // namespace Tesk
