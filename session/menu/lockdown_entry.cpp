// "Configure Lockdown Mode": whether lockdown is on; usable when it is, or
// when the host says it could be. <Enter> switches it. Greyed with the host's
// reason where the host has no lockdown mode.
#include "admin/lockdown_dialog.h"
#include "session/menu/menu_entry.h"
#include "ui/dialog.h"
#include "ui/footers.h"
#include "ui/string_ids.h"

namespace Tesk {
namespace {

class LockdownEntry : public MenuEntry {
public:
    std::string title(MenuContext& c) const override {
        return c.menu.str(StrId::ConfigureLockdownMode);
    }
    std::optional<HostCtl::Feature> feature() const override {
        return HostCtl::Feature::LockdownMode;
    }
    void reload(MenuContext& c) override {
        enabled_ = c.host.backend.GetLockdownMode()->IsEnabled();
    }
    bool enabled(MenuContext& c) override {
        return enabled_ || c.host.backend.GetLockdownMode()->IsPossible();
    }
    std::string pane(MenuContext& c) override {
        return std::string(c.menu.str(enabled_ ? StrId::Enabled : StrId::Disabled)) + "\n\n" +
               c.menu.str(StrId::ConfigureLockdownModeHelp);
    }
    std::string footer(MenuContext&) override { return Footer::kChangeLogOutOpen; }
    void open(MenuContext& c) override {
        LockdownDialog dialog(&c.menu, c.host.backend);
        // A change was asked for: the host's state is read again.
        if (Run(dialog) == 1) reload(c);
    }

private:
    bool enabled_ = false;
};

}  // namespace

std::unique_ptr<MenuEntry> MakeLockdownEntry() {
    return std::make_unique<LockdownEntry>();
}

}  // namespace Tesk
