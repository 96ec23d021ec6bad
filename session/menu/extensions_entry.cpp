// "Remove Custom Extensions": shown only while the host has custom extensions
// installed (asked of the host command tool when the menu opens).
#include <string_view>

#include "admin/reset_dialog.h"
#include "host/runner.h"
#include "session/menu/menu_entry.h"
#include "ui/footers.h"
#include "ui/string_ids.h"

namespace Tesk {
namespace {

// True when "kovacli software vib list --custom" names at least one extension.
bool HasCustomExtensions() {
    const char* argv[] = {"kovacli", "software", "vib", "list", "--custom", nullptr};
    char out[kCaptureBufferSize] = {};
    int length = kCaptureCapacity;
    if (RunCommand("/bin/kovacli", argv, out, &length, nullptr, nullptr, nullptr, 0,
                   kQueryTimeLimit) != 0)
        return false;
    const std::string_view text(out, length > 0 ? length : 0);
    return text.find_first_not_of(" \t\r\n") != std::string_view::npos;
}

class ExtensionsEntry : public FixedTextEntry {
public:
    ExtensionsEntry()
        : FixedTextEntry(StrId::RemoveCustomExtensions, StrId::RemoveCustomExtensionsHelp,
                         Footer::kResetLogOut),
          present_(HasCustomExtensions()) {}
    bool shown(MenuContext&) const override { return present_; }
    void open(MenuContext& c) override {
        RestoreDialog dialog(&c.menu, kRemoveCustomExtensions);
        Run(dialog);
    }

private:
    bool present_;
};

}  // namespace

std::unique_ptr<MenuEntry> MakeExtensionsEntry() {
    return std::make_unique<ExtensionsEntry>();
}

}  // namespace Tesk
