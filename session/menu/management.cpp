#include "session/menu/management.h"
#include "hostctl/backend.h"

#include <memory>

#include "host/queries.h"
#include "hostctl/try_call.h"
#include "session/menu/menu_entry.h"

namespace Tesk {

HostCtl::Network::ZrkNic* MenuManagementInterface(MenuContext& context) {
    auto& nic = context.managementNic;
    if (!nic) nic = GetManagementInterface(context.host.backend);
    if (nic)
        TryHost("Getting management interface failed: %s", [&nic] {
            if (nic->IsStale()) nic->Refresh();
        });
    return nic.get();
}

bool ManagementInterfaceUsable(MenuContext& context) {
    if (!context.managementUsable) {
        HostCtl::Network::ZrkNic* nic = MenuManagementInterface(context);
        context.managementUsable = nic && TryHost("Getting management interface failed: %s", [nic] {
                                              return nic->IsUsable();
                                          }).value_or(false);
    }
    return *context.managementUsable;
}

}  // namespace Tesk
