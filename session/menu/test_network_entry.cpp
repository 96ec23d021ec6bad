// "Test Management Network".
#include "session/menu/management.h"
#include "session/menu/menu_entry.h"
#include "ui/dialog.h"
#include "ui/footers.h"
#include "ui/string_ids.h"

namespace Tesk {
namespace {

class TestNetworkEntry : public MenuEntry {
public:
    std::string title(MenuContext& c) const override {
        return c.menu.str(StrId::TestManagementNetwork);
    }
    bool enabled(MenuContext& c) override { return ManagementInterfaceUsable(c); }
    std::string pane(MenuContext& c) override {
        return c.menu.str(StrId::TestManagementNetworkHelp);
    }
    std::string footer(MenuContext&) override { return Footer::kRunTestLogOut; }
};

}  // namespace

std::unique_ptr<MenuEntry> MakeTestNetworkEntry() {
    return std::make_unique<TestNetworkEntry>();
}

}  // namespace Tesk
