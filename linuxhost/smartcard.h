// Smart cards on a Linux host, read through pcsc-lite's reader service: the
// slots are pcscd's readers, a slot's token is the card in it, and the
// token's user ids are the login id the card holds (card_login.h). The card
// path of the login is offered where pcscd listens on its socket, the
// library is installed and a reader is connected.
#pragma once

#include <string>
#include <vector>

#include "hostctl/smartcard.h"
#include "linuxhost/pcsc.h"

namespace LinuxHost {

// Why the card path of the login is not offered; empty when it is. Loads
// libpcsclite only where pcscd listens.
std::string WhySmartCardLoginNotOffered();

class SmartCardInfoImpl : public HostCtl::Hardware::SmartCardInfo {
public:
    std::vector<HostCtl::Hardware::SmartCardSlot> GetAllSlots() const override;
    HostCtl::Hardware::SmartCardToken GetToken(
        const HostCtl::Hardware::SmartCardSlot& slot) const override;

private:
    PcscContext context_;
};

}  // namespace LinuxHost
