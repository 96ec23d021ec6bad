// "Network Restore Options".
#include "session/menu/menu_entry.h"
#include "ui/footers.h"
#include "ui/string_ids.h"

namespace Tesk {

std::unique_ptr<MenuEntry> MakeNetworkRestoreEntry() {
    return std::make_unique<FixedTextEntry>(
        StrId::NetworkRestoreOptions, StrId::NetworkRestoreOptionsHelp, Footer::kRestartLogOutOpen);
}

}  // namespace Tesk
