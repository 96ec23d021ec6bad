// The simulated host's smart-card slots and the tokens of the cards in them.
#include "hostctl/exception.h"
#include "simhost/hardware.h"
#include "simhost/simhost.h"

namespace ZrkCtl::Hardware {

namespace {

using Json = Sim::Json;

// "/smartCards/slots", or an empty array.
const Json& Slots(const Json& state) {
    static const Json none = Json::array();
    auto cards = state.find("smartCards");
    if (cards == state.end() || !cards->is_object()) return none;
    auto slots = cards->find("slots");
    return slots != cards->end() && slots->is_array() ? *slots : none;
}

}  // namespace

std::vector<HostCtl::Hardware::SmartCardSlot> SmartCardInfoImpl::GetAllSlots() const {
    auto state = Sim::SnapshotFor("smartCard.getAllSlots");
    std::vector<HostCtl::Hardware::SmartCardSlot> slots;
    int index = 0;
    for (const auto& s : Slots(*state))
        slots.push_back({s.value("name", "Reader " + std::to_string(index)), index++});
    return slots;
}

HostCtl::Hardware::SmartCardToken SmartCardInfoImpl::GetToken(
    const HostCtl::Hardware::SmartCardSlot& slot) const {
    auto state = Sim::SnapshotFor("smartCard.getToken");
    const Json& slots = Slots(*state);
    if (slot.index < 0 || static_cast<size_t>(slot.index) >= slots.size())
        throw HostCtl::Lib::HostCtlException("No such smart card slot: " + slot.name);
    const Json& entry = slots[static_cast<size_t>(slot.index)];
    auto token = entry.is_object() ? entry.find("token") : entry.end();
    if (!entry.is_object() || token == entry.end() || !token->is_object())
        throw HostCtl::Lib::HostCtlException("No smart card in slot " + slot.name);
    HostCtl::Hardware::SmartCardToken t;
    auto ids = token->find("userIds");
    if (ids != token->end() && ids->is_array())
        for (const auto& id : *ids)
            if (id.is_string()) t.userIds.push_back(id.get<std::string>());
    return t;
}

}  // namespace ZrkCtl::Hardware
