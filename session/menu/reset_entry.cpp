// "Reset System Configuration": not offered on a host that boots from the
// network.
#include "admin/reset_dialog.h"
#include "hostctl/backend.h"
#include "hostctl/try_call.h"
#include "session/menu/menu_entry.h"
#include "ui/footers.h"
#include "ui/string_ids.h"

namespace Tesk {
namespace {

class ResetEntry : public FixedTextEntry {
public:
    ResetEntry()
        : FixedTextEntry(StrId::ResetSystemConfiguration, StrId::ResetSystemConfigurationHelp,
                         Footer::kResetLogOut) {}
    bool enabled(MenuContext& c) override {
        return !TryHost("Getting advanced option failed: %s", [&c] {
                    return c.host.backend.GetUserAdvancedOptions()->HasUserOption("PXEBootEnabled");
                }).value_or(false);
    }
    void open(MenuContext& c) override {
        RestoreDialog dialog(&c.menu, c.host.backend);
        Run(dialog);
    }
};

}  // namespace

std::unique_ptr<MenuEntry> MakeResetEntry() {
    return std::make_unique<ResetEntry>();
}

}  // namespace Tesk
