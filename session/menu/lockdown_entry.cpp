// "Configure Lockdown Mode": whether lockdown is on; usable when it is, or
// when the host says it could be.
#include "host/runner.h"
#include "session/menu/menu_entry.h"
#include "ui/dialog.h"

namespace Tesk {
namespace {

constexpr const char kFooter[] =
    "{color:white}<Enter>{color:light-grey} Change{/color}{align:right}{color:white}<Esc>{/color}"
    "{color:light-grey} Log Out{/color}{/align}";

class LockdownEntry : public MenuEntry {
public:
    std::string title(MenuContext& c) const override { return c.menu.str(6); }
    void reload(MenuContext&) override { enabled_ = RuxCmdGet("ruxsvc/auth/lockdown_is_enabled"); }
    bool enabled(MenuContext&) override {
        return enabled_ || RuxCmdGet("ruxsvc/auth/lockdown_is_possible");
    }
    std::string pane(MenuContext& c) override {
        return std::string(c.menu.str(enabled_ ? 119 : 120)) + "\n\n" + c.menu.str(22);
    }
    std::string footer(MenuContext&) override { return kFooter; }

private:
    bool enabled_ = false;
};

}  // namespace

std::unique_ptr<MenuEntry> MakeLockdownEntry() {
    return std::make_unique<LockdownEntry>();
}

}  // namespace Tesk
