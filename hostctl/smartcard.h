// Smart-card slots and the tokens of the cards in them. The interface only; a
// host backend (hostctl/backend.h) hands out the object.
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

class SmartCardInfo {
public:
    virtual ~SmartCardInfo() = default;
    // Every slot, in the host's order.
    virtual std::vector<SmartCardSlot> GetAllSlots() const = 0;
    // The token of the card in the slot; throws HostCtl::Lib::HostCtlException
    // when the slot is empty or the card cannot be read.
    virtual SmartCardToken GetToken(const SmartCardSlot& slot) const = 0;
};

}  // namespace HostCtl::Hardware
