// "Configure Keyboard": only on the host's own console; <Enter> chooses the
// layout.
#include "admin/keyboard_dialog.h"
#include "session/menu/menu_entry.h"
#include "session/session.h"
#include "ui/footers.h"
#include "ui/string_ids.h"

namespace Tesk {
namespace {

class KeyboardEntry : public FixedTextEntry {
public:
    KeyboardEntry()
        : FixedTextEntry(StrId::ConfigureKeyboard, StrId::ConfigureKeyboardHelp,
                         Footer::kMoreLogOut) {}
    bool shown(MenuContext& c) const override { return c.session.localConsole(); }
    void open(MenuContext& c) override {
        KeyboardDialog dialog(&c.menu, c.host.backend);
        Run(dialog);
    }
};

}  // namespace

std::unique_ptr<MenuEntry> MakeKeyboardEntry() {
    return std::make_unique<KeyboardEntry>();
}

}  // namespace Tesk
