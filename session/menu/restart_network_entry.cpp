// "Restart Management Network".
#include "session/menu/management.h"
#include "session/menu/menu_entry.h"
#include "ui/dialog.h"
#include "ui/footers.h"

namespace Tesk {
namespace {

constexpr const char kFooter[] =
    "{color:white}<Enter>{/color} {color:light-grey}Restart{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";

class RestartNetworkEntry : public MenuEntry {
public:
    std::string title(MenuContext& c) const override { return c.menu.str(8); }
    bool enabled(MenuContext& c) override { return ManagementInterfaceUsable(c); }
    std::string pane(MenuContext& c) override { return c.menu.str(24); }
    std::string footer(MenuContext&) override { return kFooter; }
    void open(MenuContext& c) override {
        if (MenuManagementInterface()) return;
        MessageDialog message(&c.menu, 16, 19);
        Run(message);
    }
};

}  // namespace

std::unique_ptr<MenuEntry> MakeRestartNetworkEntry() {
    return std::make_unique<RestartNetworkEntry>();
}

// The restore entry shows the same footer.
const char* RestartFooter() {
    return kFooter;
}

}  // namespace Tesk
