// "Troubleshooting Options".
#include "session/menu/menu_entry.h"
#include "ui/dialog.h"
#include "ui/footers.h"
#include "ui/string_ids.h"

namespace Tesk {
namespace {

class TroubleshootingEntry : public MenuEntry {
public:
    std::string title(MenuContext& c) const override {
        return c.menu.str(StrId::TroubleshootingOptions);
    }
    std::string pane(MenuContext& c) override {
        return c.menu.str(StrId::TroubleshootingOptionsHelp);
    }
    std::string footer(MenuContext&) override { return Footer::kMoreLogOut; }
};

}  // namespace

std::unique_ptr<MenuEntry> MakeTroubleshootingEntry() {
    return std::make_unique<TroubleshootingEntry>();
}

}  // namespace Tesk
