#include "host/info.h"

#include <syslog.h>

#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "hostctl/try_call.h"
#include "platform/syslog.h"

namespace Tesk {

namespace {

std::string OrNotAvailable(std::string text) {
    return text.empty() ? "N/A" : text;
}

}  // namespace

bool LoadZrkNics(const HostCtl::Backend& host, std::vector<ZrkNicRecord>& records) {
    namespace HN = HostCtl::Network;
    return TryHost("Getting Zerkel nics failed: %s", [&] {
        for (const auto& nic : host.GetZerkelNicInfo()->GetZerkelNics(HN::PortsetKind::All)) {
            if (nic->IsStale()) nic->Refresh();
            auto connection = nic->GetPortConnection();
            std::string portset, portGroup;
            if (connection.GetType() != HN::ConnectionType::None)
                portset = connection.GetSwitchName();
            if (connection.GetType() == HN::ConnectionType::PortGroup)
                portGroup = connection.GetPortGroup().GetName();
            records.push_back({OrNotAvailable(nic->GetName()),
                               OrNotAvailable(nic->GetMacAddress().GetStringAddress()),
                               OrNotAvailable(portset), OrNotAvailable(portGroup)});
        }
    });
}

bool LoadPortGroups(const HostCtl::Backend& host, std::vector<PortGroupRecord>& records) {
    // The text names physical NICs although port groups are read; the line is
    // known under this text.
    return TryHost("Getting physical nics failed: %s", [&] {
        for (const auto& pg :
             host.GetNetworkInfo()->GetAllPortGroups(HostCtl::Network::PortsetKind::All))
            records.push_back(
                {pg.GetName(), pg.GetVirtualSwitchName(), pg.GetActiveClients(), pg.GetVlanId()});
    });
}

}  // namespace Tesk
