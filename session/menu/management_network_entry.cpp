// "Configure Management Network": the host name and the management
// interface's addresses; <Enter> opens the management network window.
#include "hostctl/try_call.h"
#include "network/network_window.h"
#include "session/menu/management.h"
#include "session/menu/menu_entry.h"
#include "ui/dialog.h"
#include "ui/footers.h"
#include "ui/markup_escape.h"
#include "ui/string_ids.h"

namespace Tesk {
namespace {

class ManagementNetworkEntry : public MenuEntry {
public:
    std::string title(MenuContext& c) const override {
        return c.menu.str(StrId::ConfigureManagementNetwork);
    }
    bool enabled(MenuContext& c) override { return ManagementInterfaceUsable(c); }
    std::string pane(MenuContext& c) override;
    std::string footer(MenuContext&) override { return Footer::kMoreLogOut; }
    void open(MenuContext& c) override { OpenNetworkWindow(&c.menu, c.host); }
};

std::string ManagementNetworkEntry::pane(MenuContext& c) {
    const std::string notSet = c.menu.str(StrId::NotSet);
    std::string host, ipv4, ipv6;
    bool dhcp = false;
    host = TryHost("Getting host name failed: %s", [&c] {
               return c.host.backend.GetDnsConfig("defaultNetStack")->GetHostname();
           }).value_or("");
    TryHost("Getting management interface failed: %s", [&] {
        HostCtl::Network::ZrkNic* nic = MenuManagementInterface(c);
        if (!nic) return;
        HostCtl::Network::IpConfig config = nic->GetIpConfig();
        dhcp = nic->GetConfiguredIpConfig().GetUseDhcp();
        std::string address = config.GetIpv4Address().GetStringAddress();
        if (!config.GetIpv4UseNone() && address != "0.0.0.0") ipv4 = EscapeHostText(address);
        for (const auto& net : config.GetIpv6Networks())
            ipv6 += "  " + EscapeHostText(net.GetAddress().GetStringAddress()) + "/" +
                    std::to_string(net.GetPrefixLength()) + "\n";
    });
    std::string text = std::string(c.menu.str(StrId::Hostname)) + ":\n  " +
                       (host.empty() ? notSet : EscapeHostText(host)) + "\n\n";
    text += std::string(c.menu.str(StrId::Ipv4Address)) + ":\n  " + (ipv4.empty() ? notSet : ipv4) +
            "\n";
    if (dhcp && !ipv4.empty())
        text += std::string("  ") + c.menu.str(StrId::NetworkIdentityFromDhcp) + "\n";
    text += "\n" + std::string(c.menu.str(StrId::Ipv6Addresses)) + ":\n" +
            (ipv6.empty() ? "  " + notSet + "\n" : ipv6);
    return text + "\n" + c.menu.str(StrId::ConfigureManagementNetworkHelp);
}

}  // namespace

std::unique_ptr<MenuEntry> MakeManagementNetworkEntry() {
    return std::make_unique<ManagementNetworkEntry>();
}

}  // namespace Tesk
