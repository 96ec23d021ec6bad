// Information lists of Zerkel NICs and port groups: each object is one record
// and knows how to show itself as a list row, a label and a details text.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Tesk {

class InfoType {
public:
    virtual ~InfoType() = default;
    // The list's header line (markup, two leading blanks).
    virtual std::string GetHeader() const = 0;
    // This record as a list row in the header's columns.
    virtual std::string GetRow() const = 0;
    virtual std::string GetTitle() const = 0;
    virtual std::string GetLabel() const = 0;
    virtual std::string GetFooter() const = 0;
    virtual std::string GetDetails() const = 0;
};

class ZrkNicInfo : public InfoType {
public:
    ZrkNicInfo(std::string name, std::string mac, std::string portset, std::string portGroup)
        : name(std::move(name)),
          mac(std::move(mac)),
          portset(std::move(portset)),
          portGroup(std::move(portGroup)) {}

    std::string GetHeader() const override;
    std::string GetRow() const override;
    std::string GetTitle() const override;
    std::string GetLabel() const override;
    std::string GetFooter() const override;
    std::string GetDetails() const override;

    std::string name;
    std::string mac;
    std::string portset;  // the switch's name
    std::string portGroup;
};

class PortGroupInfo : public InfoType {
public:
    PortGroupInfo(std::string name, std::string vswitch, std::int64_t activeClients,
                  std::int64_t vlanId)
        : name(std::move(name)),
          vswitch(std::move(vswitch)),
          activeClients(activeClients),
          vlanId(vlanId) {}

    std::string GetHeader() const override;
    std::string GetRow() const override;
    std::string GetTitle() const override;
    std::string GetLabel() const override;
    std::string GetFooter() const override;
    std::string GetDetails() const override;

    std::string name;
    std::string vswitch;
    std::int64_t activeClients = 0;
    std::int64_t vlanId = 0;
};

// Every Zerkel NIC; an empty text among a record's is shown as "N/A".
// False (logged) when the host cannot list them; what was read stays.
bool LoadZrkNicInfos(std::vector<ZrkNicInfo>& infos);

// Every port group of the standard switches.
bool LoadPortGroupInfos(std::vector<PortGroupInfo>& infos);

}  // namespace Tesk
