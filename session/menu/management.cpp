#include "session/menu/management.h"

#include <memory>

#include "host/queries.h"
#include "hostctl/try_call.h"
#include "session/menu/menu_entry.h"

namespace Tesk {

HostCtl::Network::ZrkNic* MenuManagementInterface() {
    static std::unique_ptr<HostCtl::Network::ZrkNic> nic;
    if (!nic) nic = GetManagementInterface();
    if (nic)
        TryHost("Getting management interface failed: %s", [] {
            if (nic->IsStale()) nic->Refresh();
        });
    return nic.get();
}

bool ManagementInterfaceUsable(MenuContext& context) {
    if (!context.managementUsable) {
        HostCtl::Network::ZrkNic* nic = MenuManagementInterface();
        context.managementUsable = nic && TryHost("Getting management interface failed: %s", [nic] {
                                              return nic->IsUsable();
                                          }).value_or(false);
    }
    return *context.managementUsable;
}

}  // namespace Tesk
