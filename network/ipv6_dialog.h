// "IPv6 Configuration": IPv6 off (after a restart), dynamic (router
// advertisements, or DHCPv6 when its box is checked), or static with up to
// three addresses and a default gateway. The static fields show the
// interface's first three static, not link-local addresses; any key typed
// into them marks the address list as edited.
#pragma once

#include "hostctl/network_types.h"
#include "network/dialog_items.h"
#include "ui/form_dialog.h"

namespace Tesk {

class IPv6ConfigurationDialog : public FormDialog {
public:
    // enabled: whether IPv6 is (to be) on; mode: the configured DHCPv6 and
    // router-advertisement flags; address: the addresses in effect and the
    // default IPv6 gateway.
    IPv6ConfigurationDialog(Window* opener, bool enabled, const HostCtl::Network::IpConfig& mode,
                            const HostCtl::Network::IpConfig& address);

    // After the dialog answered 1.
    bool enabled() const { return enabled_; }
    bool dhcpv6() const { return dhcpv6_; }
    bool routerAdvertised() const { return routerAdvertised_; }
    // The address list (the static fields added back in static mode) and the
    // gateway.
    const HostCtl::Network::IpConfig& result() const { return result_; }
    bool addressesEdited() const { return edited_; }

protected:
    KeyResult onKey(int key) override;
    KeyResult accept() override;

private:
    void showMode();
    KeyResult reject(int ordinal, std::uint32_t titleId, std::uint32_t textId);

    bool enabled_;
    bool dhcpv6_;
    bool routerAdvertised_;
    bool edited_ = false;
    HostCtl::Network::IpConfig result_;
    RadioGroup group_;
    RadioItem* disable_;
    RadioItem* dynamic_;
    CheckItem* useDhcpv6_;
    RadioItem* static_;
    InputItem* addresses_[3];
    InputItem* gateway_;
};

}  // namespace Tesk
