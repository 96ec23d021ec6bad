#include "network/info_list.h"

#include "network/list_format.h"
#include "ui/markup_escape.h"

namespace Tesk {

namespace {

constexpr const char kFooter[] =
    "{align:right}{color:black}<Enter>{/color} {color:dark-grey}OK{/color}{/align}  ";

// Loads records with load and keeps each as an info of type Info.
template <typename Info, typename Record>
bool LoadInfos(const HostCtl::Backend& host, bool (*load)(const HostCtl::Backend& host, std::vector<Record>&),
               std::vector<Info>& infos) {
    std::vector<Record> records;
    const bool ok = load(host, records);
    for (auto& record : records) infos.emplace_back(std::move(record));
    return ok;
}

}  // namespace

std::string ZrkNicInfo::GetHeader() const {
    return "  {align:padding:8}Name{/align}{align:padding:19}MAC "
           "Address{/align}{align:padding:10}Portset{/align}{align:padding:20}Portgroup{/align}";
}

std::string ZrkNicInfo::GetRow() const {
    return FittedColumn(name, 8) + FittedColumn(mac, 19) + FittedColumn(portset, 10) +
           FittedColumn(portGroup, 20);
}

std::string ZrkNicInfo::GetTitle() const {
    return "Zerkel NIC Details";
}
std::string ZrkNicInfo::GetLabel() const {
    return "Zerkel NIC Name: " + EscapeHostText(name);
}
std::string ZrkNicInfo::GetFooter() const {
    return kFooter;
}

std::string ZrkNicInfo::GetDetails() const {
    return "Name: " + EscapeHostText(name) + "\nMAC Address: " + EscapeHostText(mac) +
           "\nPortset: " + EscapeHostText(portset) + "\nPortgroup: " + EscapeHostText(portGroup);
}

std::string PortGroupInfo::GetHeader() const {
    return "  {align:padding:20}Portgroup Name{/align}{align:padding:16}Virtual "
           "Switch{/align}{align:padding:16}Active Clients{/align}{align:padding:7}VLAN ID{/align}";
}

std::string PortGroupInfo::GetRow() const {
    return FittedColumn(name, 20) + FittedColumn(vswitch, 16) + Column(Count(activeClients), 16) +
           Column(Count(vlanId), 7);
}

std::string PortGroupInfo::GetTitle() const {
    return "Portgroup Details";
}
std::string PortGroupInfo::GetLabel() const {
    return "Portgroup Name: " + EscapeHostText(name);
}
std::string PortGroupInfo::GetFooter() const {
    return kFooter;
}

std::string PortGroupInfo::GetDetails() const {
    return "Name: " + EscapeHostText(name) + "\nVirtual Switch: " + EscapeHostText(vswitch) +
           "\nActive Clients: " + Count(activeClients) + "\nVLAN ID: " + Count(vlanId);
}

bool LoadZrkNicInfos(const HostCtl::Backend& host, std::vector<ZrkNicInfo>& infos) {
    return LoadInfos(host, &LoadZrkNics, infos);
}

bool LoadPortGroupInfos(const HostCtl::Backend& host, std::vector<PortGroupInfo>& infos) {
    return LoadInfos(host, &LoadPortGroups, infos);
}

}  // namespace Tesk
