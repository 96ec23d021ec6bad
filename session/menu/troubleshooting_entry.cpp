// "Troubleshooting Options".
#include "session/menu/menu_entry.h"
#include "ui/footers.h"
#include "ui/string_ids.h"

namespace Tesk {

std::unique_ptr<MenuEntry> MakeTroubleshootingEntry() {
    return std::make_unique<FixedTextEntry>(StrId::TroubleshootingOptions,
                                            StrId::TroubleshootingOptionsHelp, Footer::kMoreLogOut);
}

}  // namespace Tesk
