// "View Support Information": the host's support information, read when the
// menu opens, in the pane.
#include <optional>

#include "session/menu/menu_entry.h"
#include "ui/dialog.h"
#include "ui/markup_escape.h"
#include "ui/string_ids.h"

namespace Tesk {
namespace {

// The text as it shows in the pane: its lines, each ended by a line feed.
std::string SupportLines(const HostCtl::Backend& host) {
    std::string lines = host.GetSupportInformation()->GetSupportText();
    if (!lines.empty() && lines.back() != '\n') lines += '\n';
    return EscapeHostLines(lines);
}

class SupportEntry : public MenuEntry {
public:
    std::string title(MenuContext& c) const override {
        return c.menu.str(StrId::ViewSupportInformation);
    }
    // Once, when the menu opens.
    void reload(MenuContext& c) override {
        if (!text_) text_ = SupportLines(c.host.backend);
    }
    std::string pane(MenuContext&) override { return text_.value_or(""); }
    std::string footer(MenuContext&) override { return {}; }

private:
    std::optional<std::string> text_;
};

}  // namespace

std::unique_ptr<MenuEntry> MakeSupportEntry() {
    return std::make_unique<SupportEntry>();
}

}  // namespace Tesk
