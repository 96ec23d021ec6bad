// Information lists of Zerkel NICs and port groups: each object is one record
// and knows how to show itself as a list row, a label and a details text.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/info.h"

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

class ZrkNicInfo : public InfoType, public ZrkNicRecord {
public:
    explicit ZrkNicInfo(ZrkNicRecord record) : ZrkNicRecord(std::move(record)) {}

    std::string GetHeader() const override;
    std::string GetRow() const override;
    std::string GetTitle() const override;
    std::string GetLabel() const override;
    std::string GetFooter() const override;
    std::string GetDetails() const override;
};

class PortGroupInfo : public InfoType, public PortGroupRecord {
public:
    explicit PortGroupInfo(PortGroupRecord record) : PortGroupRecord(std::move(record)) {}

    std::string GetHeader() const override;
    std::string GetRow() const override;
    std::string GetTitle() const override;
    std::string GetLabel() const override;
    std::string GetFooter() const override;
    std::string GetDetails() const override;
};

// Every Zerkel NIC. False (logged) when the host cannot list them; what was
// read stays.
bool LoadZrkNicInfos(const HostCtl::Backend& host, std::vector<ZrkNicInfo>& infos);

// Every port group of the standard switches.
bool LoadPortGroupInfos(const HostCtl::Backend& host, std::vector<PortGroupInfo>& infos);

}  // namespace Tesk
