// Applying the management network: the confirmation, and the procedure that
// writes the pending configuration to the host in its fixed order. A failing
// group of host calls is logged and shown, and the procedure goes on with the
// next group; what was written stays written (docs/network-screens.md).
#include "network/apply_changes.h"

#include <optional>

#include "admin/power.h"
#include "host/host_context.h"
#include "hostctl/try_call.h"
#include "network/apply_changes_dialog.h"
#include "network/apply_steps.h"
#include "platform/syslog.h"
#include "ui/footers.h"
#include "ui/string_ids.h"
#include "ui/strings.h"

namespace Tesk {
namespace {

namespace HN = HostCtl::Network;

constexpr const char kNetStack[] = "defaultNetStack";
constexpr const char kIpFailed[] = "Setting ip configuration failed: ";

bool SameIpv4(const HN::Ipv4Address& a, const HN::Ipv4Address& b) {
    return a.GetAddress() == b.GetAddress();
}

// Decides the IPv4 mode to write from the pending values and the interface's
// configured and current settings; changes only the pending address
// configuration and the run's flags.
void PrepareIpv4(ApplyRun& run, const HN::IpConfig& configured, const HN::IpConfig& current) {
    PendingNetworkConfig& p = run.pending;
    HN::IpConfig& address = p.address;
    const char* name = p.nic->GetName().c_str();

    if (p.mode.GetUseDhcp()) {
        if (!configured.GetUseDhcp())
            Platform::Log(LOG_INFO, "Switching to DHCP on %s", name);
        else
            run.renewIpv4 = run.uplinksChanged;
        address.SetUseDhcp(true);
        return;
    }
    if (address.GetIpv4UseNone()) {
        const bool hasAddress =
            !current.GetIpv4Address().IsAnyAddress() || !current.GetIpv4Netmask().IsAnyAddress();
        if (configured.GetUseDhcp() || hasAddress)
            Platform::Log(LOG_INFO, "Setting ipv4 configuration to none on %s", name);
        address.SetUseDhcp(false, true);
        return;
    }
    const bool changed = configured.GetUseDhcp() || configured.GetIpv4UseNone() ||
                         !SameIpv4(address.GetIpv4Address(), current.GetIpv4Address()) ||
                         !SameIpv4(address.GetIpv4Netmask(), current.GetIpv4Netmask());
    if (changed) {
        Platform::Log(LOG_INFO, "Setting ipv4 configuration to %s %s on %s",
                      address.GetIpv4Address().GetStringAddress().c_str(),
                      address.GetIpv4Netmask().GetStringAddress().c_str(), name);
        run.ipv4Rewritten = true;
    }
    address.SetUseDhcp(false, false);
}

// The IPv6 modes of the pending address configuration and the DHCPv6 renewal.
void PrepareIpv6(ApplyRun& run, const HN::IpConfig& current) {
    PendingNetworkConfig& p = run.pending;
    if (p.ipv6Pending) {
        if (!p.ipv6Host) p.address.EnableIpv6();
        p.address.SetUseIpv6Dhcp(p.mode.GetUseIpv6Dhcp());
        p.address.SetUseIpv6RouterAdvertised(p.mode.GetUseIpv6RouterAdvertised());
        if (p.mode.GetUseIpv6Dhcp() && current.GetUseIpv6Dhcp()) run.renewIpv6 = run.uplinksChanged;
    } else if (!p.mode.GetUseDhcp() && p.mode.GetDhcpDns() && p.ipv6Host) {
        run.renewIpv6 = true;
    }
}

// DNS by DHCP needs an address from a DHCP server: IPv4 DHCP, or DHCPv6 on a
// kernel that runs IPv6.
void SettleDhcpDns(PendingNetworkConfig& p) {
    const bool dhcpDns =
        p.mode.GetDhcpDns() && (p.mode.GetUseDhcp() || (p.ipv6Host && p.mode.GetUseIpv6Dhcp()));
    p.mode.SetDhcpDns(dhcpDns);
    p.address.SetDhcpDns(dhcpDns);
}

// Down, refresh, up. When it fails after the interface went down, one more
// attempt brings it up, so that a failed restart does not leave it down.
void RestartInterface(ApplyRun& run) {
    HN::ZrkNic& nic = *run.pending.nic;
    Platform::Log(LOG_INFO, "Changed vlan, restarting management interface");
    bool down = false;
    const bool restarted = run.Guard("Setting VlanID failed: %s", [&] {
        nic.InterfaceDown();
        down = true;
        nic.Refresh();
        nic.InterfaceUp();
    });
    if (!restarted && down)
        TryHost("Bringing the management interface up failed: %s", [&] { nic.InterfaceUp(); });
}

// The host must restart for IPv6 to be switched; the administrator agreed to
// that when applying, so the notice only waits for <Enter>.
void RestartForIpv6(Window* opener, const HostContext& host, bool enable) {
    ConfirmDialog notice(
        opener, {70, 10, 7},
        Str(enable ? StrId::EnableIpv6RestartRequired : StrId::DisableIpv6RestartRequiredTitle),
        Str(enable ? StrId::RestartToEnableIpv6 : StrId::RestartToDisableIpv6),
        Footer::kRestartHost, ConfirmDialog::Enter());
    notice.setEscapeResult(std::nullopt);
    Run(notice);
    RestartHost(opener, host, true);
}

// The management agents read the host's configuration again; the apply step
// asks as the host's administrator, not as the logged-in user.
void RefreshManagementService(const HostCtl::Backend& backend) {
    backend.GetManagementAgents()->Refresh("");
}

}  // namespace

ApplyChangesDialog::ApplyChangesDialog(Window* opener, bool reboot)
    : ConfirmDialog(opener, {70, 15, 10}, Str(StrId::ConfigureManagementNetworkConfirm),
                    Str(StrId::ApplyNetworkChangesWarning), Footer::kYesNoCancel,
                    ConfirmDialog::YesNo()) {
    setQuestion(Str(reboot ? StrId::ApplyChangesRebootHost : StrId::ApplyChangesRestartNetwork));
}

int ApplyChangesDialog::run() {
    answer_ = ConfirmDialog::run();
    return answer_;
}

ApplyAnswer AskToApplyNetworkChanges(Window* opener, bool ipv6Switched) {
    ApplyChangesDialog ask(opener, ipv6Switched);
    Run(ask);
    if (ask.answeredYes()) return ApplyAnswer::Yes;
    if (ask.answeredNo()) return ApplyAnswer::No;
    return ApplyAnswer::Cancel;
}

void ApplyNetworkChanges(Window* opener, const HostContext& host, PendingNetworkConfig& pending,
                         const std::function<void()>& summaryChanged,
                         const std::function<void()>& beforeRestart) {
    ApplyRun run{opener, host, pending};
    HN::ZrkNic& nic = *pending.nic;
    const char* name = nic.GetName().c_str();
    auto networkInfo = host.backend.GetNetworkInfo();
    auto routing = host.backend.GetRoutingInfo(kNetStack);
    auto dns = host.backend.GetDnsConfig(kNetStack);

    ApplyAdaptersAndVlan(run);

    // What the interface has now decides what must be written; without it the
    // IP settings are left alone.
    std::optional<HN::IpConfig> configured, current;
    const bool known = run.Guard(kIpFailed, [&] {
        if (nic.IsStale()) nic.Refresh();
        configured = nic.GetConfiguredIpConfig();
        current = nic.GetIpConfig();
    });
    if (known) PrepareIpv4(run, *configured, *current);

    if (pending.ipv6Pending) Platform::Log(LOG_INFO, "Setting ipv6 configuration");
    const bool ipv6Set = run.Guard("Setting ipv6 configuration failed: ",
                                   [&] { networkInfo->SetZrkIpv6Enabled(pending.ipv6Pending); });
    if (known) PrepareIpv6(run, *current);

    SettleDhcpDns(pending);

    if (known) {
        const bool written = run.Guard("Setting ip/ipv6 configuration failed: ",
                                       [&] { nic.SetIpConfig(pending.address); });
        if (written && run.ipv4Rewritten && summaryChanged) summaryChanged();
    }

    if (pending.mode.GetUseDhcp() && run.uplinksChanged)
        run.Guard(kIpFailed, [&] { nic.RequestRenewal(true); });

    const bool ipv4Static = !pending.mode.GetUseDhcp() && !pending.address.GetIpv4UseNone();
    if (ipv4Static) {
        run.Guard("Setting default gateway failed: %s", [&] {
            const HN::Ipv4Address& gateway = pending.address.GetIpv4Gateway();
            if (SameIpv4(routing->GetZerkelDefaultGateway(), gateway) && !run.ipv4Rewritten) return;
            Platform::Log(LOG_INFO, "Setting default gateway to %s",
                          gateway.GetStringAddress().c_str());
            routing->SetZerkelDefaultGateway(gateway, false);
        });
    }

    if (pending.ipv6Pending && pending.ipv6GatewayChanged) {
        const HN::Ipv6Address& gateway = pending.address.GetIpv6Gateway();
        Platform::Log(LOG_INFO, "Setting default ipv6 gateway to %s",
                      gateway.GetScopedStringAddress().c_str());
        run.Guard("Setting default ipv6 gateway failed: ",
                  [&] { routing->SetIpv6ZerkelDefaultGateway(gateway); });
    }

    if (run.renewIpv4 || run.renewIpv6) {
        Platform::Log(LOG_INFO, "Renew DHCP lease on %s", name);
        run.Guard(kIpFailed, [&] {
            if (run.renewIpv4) nic.RenewDhcp();
            if (run.renewIpv6) nic.RenewDhcpv6();
        });
    }

    if (run.vlanChanged) RestartInterface(run);

    ApplyDnsSettings(run, *dns);

    // Only a switch the host has taken needs the restart.
    if (pending.ipv6Pending != pending.ipv6Host && ipv6Set) {
        if (beforeRestart) beforeRestart();
        RestartForIpv6(opener, host, pending.ipv6Pending);
    }

    RefreshManagementService(host.backend);
}

}  // namespace Tesk
