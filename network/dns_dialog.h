// "DNS Configuration": name servers and host name by DHCP, or typed in. The
// automatic choice exists only while the interface takes an address by DHCP;
// otherwise the manual mode is fixed. A server is IPv6 when its text is an
// IPv6 address, else IPv4; an empty field clears it.
#pragma once

#include <memory>
#include <string>

#include "hostctl/network_types.h"
#include "network/dialog_items.h"
#include "ui/form_dialog.h"

namespace Tesk {

class DNSConfigurationDialog : public FormDialog {
public:
    // primary, alternate: null when not set.
    DNSConfigurationDialog(Window* opener, bool dhcpDns, bool usingDhcp,
                           const HostCtl::Network::IpAddress* primary,
                           const HostCtl::Network::IpAddress* alternate, std::string hostname);

    // After the dialog answered 1 (servers and host name only in manual mode).
    bool dhcpDns() const { return dhcpDns_; }
    std::unique_ptr<HostCtl::Network::IpAddress> takePrimary() { return std::move(primary_); }
    std::unique_ptr<HostCtl::Network::IpAddress> takeAlternate() { return std::move(alternate_); }
    const std::string& hostname() const { return hostname_; }

protected:
    KeyResult onKey(int key) override;
    KeyResult accept() override;

private:
    void showMode();

    bool dhcpDns_;
    std::unique_ptr<HostCtl::Network::IpAddress> primary_;
    std::unique_ptr<HostCtl::Network::IpAddress> alternate_;
    std::string hostname_;
    RadioGroup group_;
    RadioItem* automatic_;
    RadioItem* manual_;
    InputItem* primaryField_;
    InputItem* alternateField_;
    InputItem* hostnameField_;
};

// The label of the second server: "IPv6 DNS Server" when the first is IPv4
// and the second IPv6, else "Alternate DNS Server".
std::uint32_t SecondServerLabel(const HostCtl::Network::IpAddress* primary,
                                const HostCtl::Network::IpAddress* alternate);

}  // namespace Tesk
