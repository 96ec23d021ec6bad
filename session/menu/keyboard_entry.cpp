// "Configure Keyboard": only on the host's own console.
#include "session/menu/menu_entry.h"
#include "session/session.h"
#include "ui/dialog.h"
#include "ui/footers.h"
#include "ui/string_ids.h"

namespace Tesk {
namespace {

class KeyboardEntry : public MenuEntry {
public:
    std::string title(MenuContext& c) const override {
        return c.menu.str(StrId::ConfigureKeyboard);
    }
    bool shown(MenuContext& c) const override { return c.session.localConsole(); }
    std::string pane(MenuContext& c) override { return c.menu.str(StrId::ConfigureKeyboardHelp); }
    std::string footer(MenuContext&) override { return Footer::kMoreLogOut; }
};

}  // namespace

std::unique_ptr<MenuEntry> MakeKeyboardEntry() {
    return std::make_unique<KeyboardEntry>();
}

}  // namespace Tesk
