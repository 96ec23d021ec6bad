#include "host/info.h"

#include <syslog.h>

#include <cstdio>

#include "host/queries.h"
#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "platform/syslog.h"

namespace Tesk {

namespace {

constexpr const char kFooter[] =
    "{align:right}{color:black}<Enter>{/color} {color:dark-grey}OK{/color}{/align}  ";

std::string Column(const std::string& text, int width) {
    return "{align:padding:" + std::to_string(width) + "}" + text + "{/align}";
}

std::string Count(std::int64_t n) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%ld", static_cast<long>(n));
    return buf;
}

std::string OrNotAvailable(std::string text) {
    return text.empty() ? "N/A" : text;
}

}  // namespace

std::string ZrkNicInfo::GetHeader() const {
    return "  {align:padding:8}Name{/align}{align:padding:19}MAC "
           "Address{/align}{align:padding:10}Portset{/align}{align:padding:20}Portgroup{/align}";
}

std::string ZrkNicInfo::GetRow() const {
    return Column(FitColumn(name, 8), 8) + Column(FitColumn(mac, 19), 19) +
           Column(FitColumn(portset, 10), 10) + Column(FitColumn(portGroup, 20), 20);
}

std::string ZrkNicInfo::GetTitle() const {
    return "Zerkel NIC Details";
}
std::string ZrkNicInfo::GetLabel() const {
    return "Zerkel NIC Name: " + name;
}
std::string ZrkNicInfo::GetFooter() const {
    return kFooter;
}

std::string ZrkNicInfo::GetDetails() const {
    return "Name: " + name + "\nMAC Address: " + mac + "\nPortset: " + portset +
           "\nPortgroup: " + portGroup;
}

std::string PortGroupInfo::GetHeader() const {
    return "  {align:padding:20}Portgroup Name{/align}{align:padding:16}Virtual "
           "Switch{/align}{align:padding:16}Active Clients{/align}{align:padding:7}VLAN ID{/align}";
}

std::string PortGroupInfo::GetRow() const {
    return Column(FitColumn(name, 20), 20) + Column(FitColumn(vswitch, 16), 16) +
           Column(Count(activeClients), 16) + Column(Count(vlanId), 7);
}

std::string PortGroupInfo::GetTitle() const {
    return "Portgroup Details";
}
std::string PortGroupInfo::GetLabel() const {
    return "Portgroup Name: " + name;
}
std::string PortGroupInfo::GetFooter() const {
    return kFooter;
}

std::string PortGroupInfo::GetDetails() const {
    return "Name: " + name + "\nVirtual Switch: " + vswitch +
           "\nActive Clients: " + Count(activeClients) + "\nVLAN ID: " + Count(vlanId);
}

bool LoadZrkNicInfos(std::vector<ZrkNicInfo>& infos) {
    namespace HN = HostCtl::Network;
    try {
        for (const auto& nic :
             HostCtl::TheBackend().GetZerkelNicInfo()->GetZerkelNics(HN::PortsetKind::All)) {
            if (nic->IsStale()) nic->Refresh();
            auto connection = nic->GetPortConnection();
            std::string portset, portGroup;
            if (connection.GetType() != HN::ConnectionType::None)
                portset = connection.GetSwitchName();
            if (connection.GetType() == HN::ConnectionType::PortGroup)
                portGroup = connection.GetPortGroup().GetName();
            infos.emplace_back(OrNotAvailable(nic->GetName()),
                               OrNotAvailable(nic->GetMacAddress().GetStringAddress()),
                               OrNotAvailable(portset), OrNotAvailable(portGroup));
        }
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Platform::Log(LOG_ERR, "Getting Zerkel nics failed: %s", e.what());
        return false;
    }
    return true;
}

bool LoadPortGroupInfos(std::vector<PortGroupInfo>& infos) {
    try {
        for (const auto& pg : HostCtl::TheBackend().GetNetworkInfo()->GetAllPortGroups(
                 HostCtl::Network::PortsetKind::All))
            infos.emplace_back(pg.GetName(), pg.GetVirtualSwitchName(), pg.GetActiveClients(),
                               pg.GetVlanId());
    } catch (const HostCtl::Lib::HostCtlException& e) {
        // The text names physical NICs although port groups are read; the
        // line is known under this text.
        Platform::Log(LOG_ERR, "Getting physical nics failed: %s", e.what());
        return false;
    }
    return true;
}

}  // namespace Tesk
