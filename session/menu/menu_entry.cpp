#include "session/menu/menu_entry.h"

#include "ui/dialog.h"

namespace Tesk {

std::string FixedTextEntry::title(MenuContext& context) const {
    return context.menu.str(titleId_);
}

std::string FixedTextEntry::pane(MenuContext& context) {
    return context.menu.str(paneId_);
}

}  // namespace Tesk
