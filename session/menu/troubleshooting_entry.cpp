// "Troubleshooting Options".
#include "session/menu/menu_entry.h"
#include "ui/dialog.h"
#include "ui/footers.h"

namespace Tesk {
namespace {

class TroubleshootingEntry : public MenuEntry {
public:
    std::string title(MenuContext& c) const override { return c.menu.str(13); }
    std::string pane(MenuContext& c) override { return c.menu.str(28); }
    std::string footer(MenuContext&) override { return Footer::kMoreLogOut; }
};

}  // namespace

std::unique_ptr<MenuEntry> MakeTroubleshootingEntry() {
    return std::make_unique<TroubleshootingEntry>();
}

}  // namespace Tesk
