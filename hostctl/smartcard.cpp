#include "hostctl/smartcard.h"

#include "hostctl/exception.h"
#include "hostctl/simhost.h"

namespace ZrkCtl::Hardware {

std::vector<HostCtl::Hardware::SmartCardSlot> SmartCardInfoImpl::GetAllSlots() const {
    Sim::CheckFault("smartCard.getAllSlots");
    Sim::Json state = Sim::Load();
    std::vector<HostCtl::Hardware::SmartCardSlot> slots;
    int index = 0;
    for (const auto& s : state["smartCards"].value("slots", Sim::Json::array()))
        slots.push_back({s.value("name", "Reader " + std::to_string(index)), index++});
    return slots;
}

HostCtl::Hardware::SmartCardToken SmartCardInfoImpl::GetToken(
    const HostCtl::Hardware::SmartCardSlot& slot) const {
    Sim::CheckFault("smartCard.getToken");
    Sim::Json state = Sim::Load();
    const auto& slots = state["smartCards"].value("slots", Sim::Json::array());
    if (slot.index < 0 || static_cast<size_t>(slot.index) >= slots.size())
        throw HostCtl::Lib::HostCtlException("No such smart card slot: " + slot.name);
    const auto& token = slots[static_cast<size_t>(slot.index)]["token"];
    if (!token.is_object())
        throw HostCtl::Lib::HostCtlException("No smart card in slot " + slot.name);
    HostCtl::Hardware::SmartCardToken t;
    for (const auto& id : token.value("userIds", Sim::Json::array()))
        if (id.is_string()) t.userIds.push_back(id.get<std::string>());
    return t;
}

}  // namespace ZrkCtl::Hardware
