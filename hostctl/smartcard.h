// Smart-card slots and the tokens of the cards in them.
#pragma once

#include <string>
#include <vector>

namespace HostCtl::Hardware {

struct SmartCardSlot {
    std::string name;
    int index = 0;
};

struct SmartCardToken {
    std::vector<std::string> userIds;
};

}  // namespace HostCtl::Hardware

namespace ZrkCtl::Hardware {

class SmartCardInfoImpl {
public:
    // Every slot, in the host's order.
    std::vector<HostCtl::Hardware::SmartCardSlot> GetAllSlots() const;
    // The token of the card in the slot; throws HostCtl::Lib::HostCtlException
    // when the slot is empty or the card cannot be read.
    HostCtl::Hardware::SmartCardToken GetToken(const HostCtl::Hardware::SmartCardSlot& slot) const;
};

}  // namespace ZrkCtl::Hardware
