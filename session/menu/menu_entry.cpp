#include "session/menu/menu_entry.h"

#include "ui/dialog.h"
#include "ui/footers.h"
#include "ui/markup_escape.h"

namespace Tesk {

std::string FixedTextEntry::title(MenuContext& context) const {
    return context.menu.str(titleId_);
}

std::string FixedTextEntry::pane(MenuContext& context) {
    return context.menu.str(paneId_);
}

namespace {

class NotOfferedEntry : public MenuEntry {
public:
    NotOfferedEntry(std::unique_ptr<MenuEntry> entry, std::string reason)
        : entry_(std::move(entry)), reason_(std::move(reason)) {}
    std::string title(MenuContext& context) const override { return entry_->title(context); }
    bool greyed() const override { return true; }
    std::string pane(MenuContext&) override { return EscapeHostText(reason_); }
    std::string footer(MenuContext&) override { return Footer::kLogOut; }

private:
    std::unique_ptr<MenuEntry> entry_;
    std::string reason_;
};

}  // namespace

std::unique_ptr<MenuEntry> MakeNotOfferedEntry(std::unique_ptr<MenuEntry> entry,
                                               std::string reason) {
    return std::make_unique<NotOfferedEntry>(std::move(entry), std::move(reason));
}

}  // namespace Tesk
