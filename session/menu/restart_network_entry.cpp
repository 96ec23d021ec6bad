// "Restart Management Network".
#include "network/restart_network_dialog.h"
#include "session/menu/management.h"
#include "session/menu/menu_entry.h"
#include "ui/dialog.h"
#include "ui/footers.h"
#include "ui/string_ids.h"

namespace Tesk {
namespace {

class RestartNetworkEntry : public FixedTextEntry {
public:
    RestartNetworkEntry()
        : FixedTextEntry(StrId::RestartManagementNetwork, StrId::RestartManagementNetworkHelp,
                         Footer::kRestartLogOutOpen) {}
    bool enabled(MenuContext& c) override { return ManagementInterfaceUsable(c); }
    void open(MenuContext& c) override {
        if (HostCtl::Network::ZrkNic* nic = MenuManagementInterface(c)) {
            RestartNetworkDialog restart(&c.menu, *nic);
            Run(restart);
            return;
        }
        MessageDialog message(&c.menu, StrId::RestartManagementNetworkError,
                              StrId::ManagementInterfaceNotFound);
        Run(message);
    }
};

}  // namespace

std::unique_ptr<MenuEntry> MakeRestartNetworkEntry() {
    return std::make_unique<RestartNetworkEntry>();
}

}  // namespace Tesk
