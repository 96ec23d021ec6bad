// "Network Restore Options".
#include "recovery/network_restore_window.h"
#include "session/menu/menu_entry.h"
#include "ui/dialog.h"
#include "ui/footers.h"
#include "ui/string_ids.h"

namespace Tesk {

namespace {

class NetworkRestoreEntry : public FixedTextEntry {
public:
    NetworkRestoreEntry()
        : FixedTextEntry(StrId::NetworkRestoreOptions, StrId::NetworkRestoreOptionsHelp,
                         Footer::kRestartLogOutOpen) {}
    void open(MenuContext& c) override {
        NetworkRestoreWindow window(&c.menu, c.host);
        Run(window);
    }
};

}  // namespace

std::unique_ptr<MenuEntry> MakeNetworkRestoreEntry() {
    return std::make_unique<NetworkRestoreEntry>();
}

}  // namespace Tesk
