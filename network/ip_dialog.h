// "IPv4 Configuration": IPv4 off, by DHCP, or static with address, subnet
// mask and default gateway. The three fields can be edited only in the static
// mode, take only digits and dots, and are checked in that order on Enter.
#pragma once

#include "hostctl/network_types.h"
#include "network/dialog_items.h"
#include "ui/form_dialog.h"

namespace Tesk {

class IPConfigurationDialog : public FormDialog {
public:
    // address: the addresses in effect and the default gateway; the result
    // starts as a copy of it.
    IPConfigurationDialog(Window* opener, bool none, bool dhcp,
                          const HostCtl::Network::IpConfig& address);

    // After the dialog answered 1.
    bool none() const { return mode_ == kNone; }
    bool dhcp() const { return mode_ == kDhcp; }
    // The addresses and the gateway chosen (all zero gateway unless static).
    const HostCtl::Network::IpConfig& result() const { return result_; }

protected:
    KeyResult onKey(int key) override;
    KeyResult accept() override;

private:
    enum Mode { kNone, kDhcp, kStatic };
    void showMode();
    KeyResult reject(int ordinal, std::uint32_t titleId, std::uint32_t textId);

    Mode mode_;
    HostCtl::Network::IpConfig result_;
    RadioGroup group_;
    RadioItem* radios_[3];
    InputItem* address_;
    InputItem* netmask_;
    InputItem* gateway_;
};

}  // namespace Tesk
