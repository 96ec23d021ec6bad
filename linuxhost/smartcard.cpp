#include "linuxhost/smartcard.h"

#include "hostctl/exception.h"

namespace LinuxHost {

std::string WhySmartCardLoginNotOffered() {
    if (!PcscdListens()) return "No smart-card reader service (pcscd) runs on this host.";
    if (!PcscLibraryAvailable())
        return "The smart-card library (libpcsclite) is not installed on this host.";
    try {
        if (PcscContext().Readers().empty())
            return "No smart-card reader is connected to this host.";
    } catch (const HostCtl::Lib::HostCtlException&) {
        return "The smart-card reader service (pcscd) does not answer.";  // why is logged
    }
    return {};
}

std::vector<HostCtl::Hardware::SmartCardSlot> SmartCardInfoImpl::GetAllSlots() const {
    std::vector<HostCtl::Hardware::SmartCardSlot> slots;
    for (const auto& reader : context_.Readers())
        slots.push_back({reader, static_cast<int>(slots.size())});
    return slots;
}

HostCtl::Hardware::SmartCardToken SmartCardInfoImpl::GetToken(
    const HostCtl::Hardware::SmartCardSlot& slot) const {
    PcscCard card(context_, slot.name);
    return {ReadCardLoginIds(card)};
}

}  // namespace LinuxHost
