// "Reset System Configuration": not offered on a host that boots from the
// network; its pane is the host's own warning where the host has one.
#include "admin/reset_dialog.h"
#include "hostctl/backend.h"
#include "hostctl/try_call.h"
#include "session/menu/menu_entry.h"
#include "ui/footers.h"
#include "ui/markup_escape.h"
#include "ui/string_ids.h"

namespace Tesk {
namespace {

class ResetEntry : public FixedTextEntry {
public:
    ResetEntry()
        : FixedTextEntry(StrId::ResetSystemConfiguration, StrId::ResetSystemConfigurationHelp,
                         Footer::kResetLogOut) {}
    // The host's own account of the reset where the standard one is wrong.
    std::string pane(MenuContext& c) override {
        const std::string own = TryHost("Getting the reset's warning failed: %s", [&c] {
                                    return c.host.backend.GetHostConfiguration()->ResetWarning();
                                }).value_or("");
        return own.empty() ? FixedTextEntry::pane(c) : EscapeHostLines(own);
    }
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
