// "Test Management Network".
#include "session/menu/management.h"
#include "session/menu/menu_entry.h"
#include "ui/dialog.h"
#include "ui/footers.h"

namespace Tesk {
namespace {

class TestNetworkEntry : public MenuEntry {
public:
    std::string title(MenuContext& c) const override { return c.menu.str(9); }
    bool enabled(MenuContext& c) override { return ManagementInterfaceUsable(c); }
    std::string pane(MenuContext& c) override { return c.menu.str(25); }
    std::string footer(MenuContext&) override { return Footer::kRunTestLogOut; }
};

}  // namespace

std::unique_ptr<MenuEntry> MakeTestNetworkEntry() {
    return std::make_unique<TestNetworkEntry>();
}

}  // namespace Tesk
