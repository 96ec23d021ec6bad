// The names of the recorded changes, as log lines give them.
#include "hostctl/change_record.h"

namespace HostCtl::Changes {

const char* ChangeKindName(ChangeKind kind) {
    switch (kind) {
        case ChangeKind::ManagementNetwork:
            return "management network";
        case ChangeKind::FactoryNetworkRestore:
            return "factory network restore";
        case ChangeKind::StandardSwitchRestore:
            return "standard switch restore";
        case ChangeKind::AgentsRestart:
            return "management agents restart";
    }
    return "change";
}

}  // namespace HostCtl::Changes
