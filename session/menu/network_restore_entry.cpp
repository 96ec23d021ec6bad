// "Network Restore Options".
#include "session/menu/menu_entry.h"
#include "ui/dialog.h"
#include "ui/footers.h"
#include "ui/string_ids.h"

namespace Tesk {

namespace {

class NetworkRestoreEntry : public MenuEntry {
public:
    std::string title(MenuContext& c) const override {
        return c.menu.str(StrId::NetworkRestoreOptions);
    }
    std::string pane(MenuContext& c) override {
        return c.menu.str(StrId::NetworkRestoreOptionsHelp);
    }
    std::string footer(MenuContext&) override { return Footer::kRestartLogOutOpen; }
};

}  // namespace

std::unique_ptr<MenuEntry> MakeNetworkRestoreEntry() {
    return std::make_unique<NetworkRestoreEntry>();
}

}  // namespace Tesk
