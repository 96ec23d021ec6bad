// The simulated host's smart-card slots and the tokens of the cards in them.
#include "hostctl/exception.h"
#include "simhost/hardware.h"
#include "simhost/simhost.h"
#include "simhost/state_values.h"

namespace ZrkCtl::Hardware {

namespace {

using Json = Sim::Json;

// "/smartCards/slots", or an empty array.
const Json& Slots(const Json& state) {
    return Sim::Entries(Sim::Object(state, "smartCards"), "slots");
}

}  // namespace

std::vector<HostCtl::Hardware::SmartCardSlot> SmartCardInfoImpl::GetAllSlots() const {
    auto state = Sim::SnapshotFor("smartCard.getAllSlots");
    std::vector<HostCtl::Hardware::SmartCardSlot> slots;
    int index = 0;
    for (const auto& s : Slots(*state))
        slots.push_back({Sim::Text(s, "name", "Reader " + std::to_string(index)), index++});
    return slots;
}

HostCtl::Hardware::SmartCardToken SmartCardInfoImpl::GetToken(
    const HostCtl::Hardware::SmartCardSlot& slot) const {
    auto state = Sim::SnapshotFor("smartCard.getToken");
    const Json& slots = Slots(*state);
    if (slot.index < 0 || static_cast<size_t>(slot.index) >= slots.size())
        throw HostCtl::Lib::HostCtlException("No such smart card slot: " + slot.name);
    const Json& entry = slots[static_cast<size_t>(slot.index)];
    if (!Sim::Member(entry, "token"))
        throw HostCtl::Lib::HostCtlException("No smart card in slot " + slot.name);
    HostCtl::Hardware::SmartCardToken t;
    t.userIds = Sim::Texts(Sim::Object(entry, "token"), "userIds");
    return t;
}

}  // namespace ZrkCtl::Hardware
