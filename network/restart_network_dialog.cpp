// Restarting the management network.
#include "network/restart_network_dialog.h"

#include <syslog.h>

#include "hostctl/exception.h"
#include "hostctl/try_call.h"
#include "platform/events.h"
#include "ui/footers.h"
#include "ui/markup_escape.h"
#include "ui/string_ids.h"

namespace Tesk {
namespace {

namespace HN = HostCtl::Network;

constexpr DialogSize kConfirmSize{70, 14, 9};
constexpr DialogSize kProgressSize{70, 18, 7};

}  // namespace

std::string RestartAddressLines(const HN::IpConfig& now, bool ipv4Dhcp) {
    const std::string prefix = std::string("   ") + Str(StrId::IpAddressIs) + " ";
    std::string text;
    if (!ipv4Dhcp)
        text += "\n" + prefix + EscapeHostText(now.GetIpv4Address().GetStringAddress()) + "\n";
    // Only the first address type (the static addresses): what was learnt from
    // router advertisements or DHCPv6 is not listed, even when it comes first.
    std::vector<const HN::Ipv6Network*> shown;
    for (const auto& n : now.GetIpv6Networks())
        if (n.GetScope() != HN::Ipv6Scope::LinkLocal &&
            n.GetIpv6AddressType() == HN::Ipv6AddressType::Static)
            shown.push_back(&n);
    const size_t count = shown.size() > 3 ? 2 : shown.size();
    if (ipv4Dhcp && !shown.empty()) text += "\n";
    for (size_t i = 0; i < count; ++i)
        text += prefix + EscapeHostText(shown[i]->GetStringAddress()) + "\n";
    if (count < shown.size()) text += "   ...\n";
    return text;
}

RestartNetworkDialog::RestartNetworkDialog(Window* opener, HN::ZrkNic& nic)
    : ConfirmDialog(opener, kConfirmSize, Str(StrId::RestartManagementNetworkConfirm),
                    Str(StrId::RestartManagementNetworkWarning), Footer::kF11OkCancel,
                    ConfirmDialog::F11()),
      nic_(nic) {
    setQuestion(Str(StrId::RestartManagementNetworkNow));
}

int RestartNetworkDialog::run() {
    if (ConfirmDialog::run() != kYes) return 0;
    DoRestartNetworkDialog restart(opener(), nic_);
    Run(restart);
    return 1;
}

DoRestartNetworkDialog::DoRestartNetworkDialog(Window* opener, HN::ZrkNic& nic)
    : ProgressDialog(opener, kProgressSize, Str(StrId::RestartManagementNetworkTitle),
                     Str(StrId::ManagementNetworkRestartsWait),
                     [this](ProgressDialog&) { return work(); }),
      nic_(nic) {
    setFooter("");
}

int DoRestartNetworkDialog::work() {
    const std::string name = nic_.GetName();
    const bool dhcp = TryHost("Reading the IP configuration failed: %s", [&] {
                          if (nic_.IsStale()) nic_.Refresh();
                          return nic_.GetConfiguredIpConfig().GetUseDhcp();
                      }).value_or(false);
    PostEvent(LOG_INFO, "Restarting " + name, nullptr,
              "@&!*@*@(nox.user.tesk.network.restart)Restarting %s", name.c_str());

    add(std::string(str(StrId::StoppingManagementNetwork)) + " ");
    TryHost("Taking the management interface down failed: %s", [&] {
        nic_.InterfaceDown();
        nic_.Refresh();
    });
    finishLine(str(StrId::Done));

    TryHost("Bringing the management interface up failed: %s", [&] { nic_.InterfaceUp(); });
    add(std::string(str(StrId::StartingManagementNetwork)) + " ");
    auto now = TryHost("Reading the addresses failed: %s", [&] {
        nic_.Refresh();
        return nic_.GetIpConfig();
    });
    add(RestartAddressLines(now.value_or(HN::IpConfig()), dhcp));
    add(str(StrId::Done));
    waitForEnter(Footer::kOkJoined);
    return 1;
}

}  // namespace Tesk
