// "Remove Custom Extensions": shown only while the host has custom extensions
// installed (asked when the menu opens); greyed with the host's reason where
// the host has none to offer.
#include "admin/reset_dialog.h"
#include "session/menu/menu_entry.h"
#include "ui/footers.h"
#include "ui/string_ids.h"

namespace Tesk {
namespace {

class ExtensionsEntry : public FixedTextEntry {
public:
    ExtensionsEntry()
        : FixedTextEntry(StrId::RemoveCustomExtensions, StrId::RemoveCustomExtensionsHelp,
                         Footer::kResetLogOut) {}
    std::optional<HostCtl::Feature> feature() const override {
        return HostCtl::Feature::CustomExtensions;
    }
    bool shown(MenuContext& c) const override {
        return c.host.backend.GetHostConfiguration()->HasCustomExtensions();
    }
    void open(MenuContext& c) override {
        RestoreDialog dialog(&c.menu, c.host.backend, kRemoveCustomExtensions);
        Run(dialog);
    }
};

}  // namespace

std::unique_ptr<MenuEntry> MakeExtensionsEntry() {
    return std::make_unique<ExtensionsEntry>();
}

}  // namespace Tesk
