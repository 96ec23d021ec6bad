// "Restart Management Network".
#include "session/menu/management.h"
#include "session/menu/menu_entry.h"
#include "ui/dialog.h"
#include "ui/footers.h"
#include "ui/string_ids.h"

namespace Tesk {
namespace {

class RestartNetworkEntry : public MenuEntry {
public:
    std::string title(MenuContext& c) const override {
        return c.menu.str(StrId::RestartManagementNetwork);
    }
    bool enabled(MenuContext& c) override { return ManagementInterfaceUsable(c); }
    std::string pane(MenuContext& c) override {
        return c.menu.str(StrId::RestartManagementNetworkHelp);
    }
    std::string footer(MenuContext&) override { return Footer::kRestartLogOutOpen; }
    void open(MenuContext& c) override {
        if (MenuManagementInterface()) return;
        MessageDialog message(&c.menu, StrId::RestartManagementNetworkError,
                              StrId::ManagementInterfaceNotFound);
        Run(message);
    }
};

}  // namespace

std::unique_ptr<MenuEntry> MakeRestartNetworkEntry() {
    return std::make_unique<RestartNetworkEntry>();
}

}  // namespace Tesk
