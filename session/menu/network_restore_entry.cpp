// "Network Restore Options".
#include "session/menu/menu_entry.h"
#include "ui/dialog.h"

namespace Tesk {

const char* RestartFooter();

namespace {

class NetworkRestoreEntry : public MenuEntry {
public:
    std::string title(MenuContext& c) const override { return c.menu.str(10); }
    std::string pane(MenuContext& c) override { return c.menu.str(26); }
    std::string footer(MenuContext&) override { return RestartFooter(); }
};

}  // namespace

std::unique_ptr<MenuEntry> MakeNetworkRestoreEntry() {
    return std::make_unique<NetworkRestoreEntry>();
}

}  // namespace Tesk
