#include "network/network_window.h"

#include <syslog.h>

#include "host/management_network.h"
#include "host/queries.h"
#include "hostctl/try_call.h"
#include "network/adapters_dialog.h"
#include "network/apply_changes.h"
#include "network/dns_dialog.h"
#include "network/host_changes.h"
#include "network/ip_dialog.h"
#include "network/ipv6_dialog.h"
#include "network/network_summary.h"
#include "network/safe_apply.h"
#include "network/suffixes_dialog.h"
#include "network/vlan_dialog.h"
#include "platform/syslog.h"
#include "ui/footers.h"
#include "ui/string_ids.h"

namespace Tesk {

namespace HN = HostCtl::Network;

namespace {

constexpr const char kNetStack[] = "defaultNetStack";

std::string ServerText(const HN::IpAddress* server) {
    return server ? server->GetStringAddress() : "";
}

// The default gateways, host name, search domains and name servers; false
// (logged) when the host cannot tell.
bool ReadHostSettings(const HostCtl::Backend& backend, PendingNetworkConfig& p) {
    std::unique_ptr<HN::RoutingInfo> routing;
    std::unique_ptr<HN::DnsConfig> dns;
    return TryHost("Getting DNS configuration failed: %s",
                   [&] {
                       routing = backend.GetRoutingInfo(kNetStack);
                       dns = backend.GetDnsConfig(kNetStack);
                   }) &&
           TryHost("Getting default gateway failed: %s",
                   [&] { p.address.SetIpv4Gateway(routing->GetZerkelDefaultGateway()); }) &&
           TryHost("Getting host name failed: %s", [&] { p.hostname = dns->GetHostname(); }) &&
           TryHost("Getting default ipv6 gateway failed: %s",
                   [&] { p.address.SetIpv6Gateway(routing->GetIpv6ZerkelDefaultGateway()); }) &&
           TryHost("Getting DNS configuration failed: %s", [&] {
               if (dns->IsStale()) dns->Refresh();
               p.suffixes = dns->GetSearchDomains();
               const auto v4 = dns->GetNameServers();
               const auto v6 = dns->GetIpv6NameServers(false);
               // The first IPv4 server leads; an IPv6 one comes second
               // before another IPv4 one.
               if (!v4.empty()) {
                   p.primaryDns = v4[0].Clone();
                   if (!v6.empty())
                       p.alternateDns = v6[0].Clone();
                   else if (v4.size() > 1)
                       p.alternateDns = v4[1].Clone();
               } else if (!v6.empty()) {
                   p.primaryDns = v6[0].Clone();
                   if (v6.size() > 1) p.alternateDns = v6[1].Clone();
               }
           });
}

}  // namespace

std::optional<PendingNetworkConfig> LoadPendingNetworkConfig(Window* opener,
                                                             const HostContext& host) {
    const HostCtl::Backend& backend = host.backend;
    PendingNetworkConfig p;
    auto ipv6 = TryHost("Getting IPv6 state failed: %s",
                        [&backend] { return backend.GetNetworkInfo()->IsZrkIpv6Enabled(); });
    if (!ipv6) return std::nullopt;
    p.ipv6Pending = p.ipv6Host = *ipv6;
    p.nic = GetManagementInterface(backend);
    if (!p.nic) {
        Platform::Log(LOG_ERR, "Could not get a suitable management interface");
        MessageDialog error(opener, StrId::EnableManagementNetworkError,
                            StrId::ManagementInterfaceNotFound);
        Run(error);
        return std::nullopt;
    }
    if (!TryHost("Getting IP configuration failed: %s", [&] {
            if (p.nic->IsStale()) p.nic->Refresh();
            p.mode = p.nic->GetConfiguredIpConfig();
            p.address = p.nic->GetIpConfig();
        }))
        return std::nullopt;
    p.onDistributedSwitch = IsOnDistributedSwitch(*p.nic);
    if (!p.onDistributedSwitch) {
        auto group = ReadManagementPortGroup(*p.nic);
        if (!group) return std::nullopt;
        p.adapters = std::move(group->activeUplinks);
        p.activeUplinks = group->maxActiveUplinks;
        p.vlanId = group->vlanId;
    }
    if (!ReadHostSettings(backend, p)) return std::nullopt;
    p.suffixText = JoinNames(p.suffixes, ", ");
    return p;
}

NetworkWindow::NetworkWindow(Window* opener, const HostContext& host, PendingNetworkConfig pending)
    : PaneWindow(opener, Footer::kSelect),
      host_(host),
      pending_(std::move(pending)),
      read_(ValuesOf(pending_)) {
    setTitle(str(StrId::ConfigureManagementNetworkTitle));
    // Each row: its name, the topic its pane sums up, the dialog that changes it.
    auto row = [this](std::uint32_t title, NetworkTopic topic, void (NetworkWindow::*change)()) {
        return addRow(str(title), {[this, title, topic] { return topicPane(title, topic); },
                                   [this, change] { (this->*change)(); }});
    };
    const int adapters =
        row(StrId::NetworkAdapters, NetworkTopic::Adapters, &NetworkWindow::changeAdapters);
    const int vlan = row(StrId::VlanOptional, NetworkTopic::Vlan, &NetworkWindow::changeVlan);
    addRow("", false);
    row(StrId::Ipv4Configuration, NetworkTopic::Ipv4, &NetworkWindow::changeIpv4);
    row(StrId::Ipv6Configuration, NetworkTopic::Ipv6, &NetworkWindow::changeIpv6);
    row(StrId::DnsConfiguration, NetworkTopic::Dns, &NetworkWindow::changeDns);
    row(StrId::CustomDnsSuffixes, NetworkTopic::Suffixes, &NetworkWindow::changeSuffixes);
    // On a distributed switch the adapters and the VLAN are not the console's.
    setRowEnabled(adapters, !pending_.onDistributedSwitch);
    setRowEnabled(vlan, !pending_.onDistributedSwitch);
    selectRow(0);
}

PaneText NetworkWindow::topicPane(std::uint32_t title, NetworkTopic topic) const {
    const HostCtl::Backend& backend = host_.backend;
    return {"{color:white}" + std::string(str(title)) + "{/color}\n\n" +
                NetworkSummary(topic, pending_,
                               [&backend](const std::string& pnic) {
                                   return GetAdapterDescription(backend, pnic);
                               }),
            Footer::kChangeExitSpaced};
}

void NetworkWindow::changeAdapters() {
    auto switchName = GetConnectionSwitchName(*pending_.nic);
    if (!switchName) return;
    AdaptersDialog dialog(this, host_, pending_.adapters, pending_.activeUplinks, *switchName);
    if (!dialog.loaded() || Run(dialog) != 1) return;
    // A new order is a change too: the first adapter lends its MAC address.
    if (dialog.selection() != pending_.adapters ||
        dialog.activeUplinks() != pending_.activeUplinks) {
        pending_.changed = true;
        pending_.adapters = dialog.selection();
        pending_.activeUplinks = dialog.activeUplinks();
    }
}

void NetworkWindow::changeVlan() {
    VlanDialog dialog(this, pending_.vlanId);
    if (Run(dialog) != 1 || dialog.value() == pending_.vlanId) return;
    pending_.changed = true;
    pending_.vlanId = dialog.value();
}

void NetworkWindow::changeIpv4() {
    HN::IpConfig& address = pending_.address;
    IPConfigurationDialog dialog(this, address.GetIpv4UseNone(), pending_.mode.GetUseDhcp(),
                                 address);
    if (Run(dialog) != 1) return;
    const HN::IpConfig& r = dialog.result();
    const bool isStatic = !dialog.dhcp() && !dialog.none();
    const bool changed =
        dialog.dhcp() != pending_.mode.GetUseDhcp() || dialog.none() != address.GetIpv4UseNone() ||
        (isStatic && (r.GetIpv4Address().GetAddress() != address.GetIpv4Address().GetAddress() ||
                      r.GetIpv4Netmask().GetAddress() != address.GetIpv4Netmask().GetAddress() ||
                      r.GetIpv4Gateway().GetAddress() != address.GetIpv4Gateway().GetAddress()));
    if (!changed) return;
    pending_.changed = true;
    pending_.mode.SetUseDhcp(dialog.dhcp());
    address.SetUseDhcp(dialog.dhcp(), dialog.none());
    if (!dialog.none()) {
        address.SetIpv4Address(r.GetIpv4Address());
        address.SetIpv4Netmask(r.GetIpv4Netmask());
    }
    address.SetIpv4Gateway(r.GetIpv4Gateway());
}

void NetworkWindow::changeIpv6() {
    HN::IpConfig& mode = pending_.mode;
    HN::IpConfig& address = pending_.address;
    IPv6ConfigurationDialog dialog(this, pending_.ipv6Pending, mode, address);
    if (Run(dialog) != 1) return;
    const HN::IpConfig& r = dialog.result();
    const bool gatewayChanged = !(r.GetIpv6Gateway() == address.GetIpv6Gateway());
    // Switching IPv6 on or off is told apart from the other settings: leaving
    // compares the pending switch with the host's, so switching back and
    // forth asks nothing.
    if (dialog.enabled() && (dialog.dhcpv6() != mode.GetUseIpv6Dhcp() ||
                             dialog.routerAdvertised() != mode.GetUseIpv6RouterAdvertised() ||
                             gatewayChanged || dialog.addressesEdited()))
        pending_.changed = true;
    pending_.ipv6Pending = dialog.enabled();
    if (!dialog.enabled()) return;
    if (gatewayChanged) pending_.ipv6GatewayChanged = true;
    mode.SetUseIpv6Dhcp(dialog.dhcpv6());
    mode.SetUseIpv6RouterAdvertised(dialog.routerAdvertised());
    address.EnableIpv6(true);
    address.SetUseIpv6Dhcp(dialog.dhcpv6());
    address.SetUseIpv6RouterAdvertised(dialog.routerAdvertised());
    address.SetIpv6Networks(r.GetIpv6Networks());
    address.SetIpv6Gateway(r.GetIpv6Gateway());
}

void NetworkWindow::changeDns() {
    DNSConfigurationDialog dialog(this, pending_.mode.GetDhcpDns(), pending_.mode.IsUsingDhcp(),
                                  pending_.primaryDns.get(), pending_.alternateDns.get(),
                                  pending_.hostname);
    if (Run(dialog) != 1) return;
    auto primary = dialog.takePrimary();
    auto alternate = dialog.takeAlternate();
    if (dialog.dhcpDns() == pending_.mode.GetDhcpDns() &&
        ServerText(primary.get()) == ServerText(pending_.primaryDns.get()) &&
        ServerText(alternate.get()) == ServerText(pending_.alternateDns.get()) &&
        dialog.hostname() == pending_.hostname)
        return;
    pending_.changed = true;
    pending_.mode.SetDhcpDns(dialog.dhcpDns());
    pending_.primaryDns = std::move(primary);
    pending_.alternateDns = std::move(alternate);
    pending_.hostname = dialog.hostname();
}

void NetworkWindow::changeSuffixes() {
    SuffixesDialog dialog(this, pending_.suffixText);
    if (Run(dialog) != 1 || dialog.text() == pending_.suffixText) return;
    pending_.changed = true;
    pending_.suffixText = dialog.text();
}

bool NetworkWindow::leave() {
    const bool ipv6Switched = pending_.ipv6Pending != pending_.ipv6Host;
    if (!pending_.changed && !ipv6Switched) return true;
    switch (AskToApplyNetworkChanges(this, ipv6Switched)) {
        case ApplyAnswer::Cancel:
            return false;
        case ApplyAnswer::No:
            return true;
        case ApplyAnswer::Yes:
            if (!SettleWithHost(this, host_, pending_, read_)) {
                refreshPane();
                return false;
            }
            if (!SafelyApplyNetworkChanges(this, host_, pending_, [this] { refreshPane(); }))
                return false;
            Platform::Log(LOG_INFO, "Network settings changed.");
            return true;
    }
    return true;
}

bool OpenNetworkWindow(Window* opener, const HostContext& host) {
    auto pending = LoadPendingNetworkConfig(opener, host);
    if (!pending) return false;
    NetworkWindow window(opener, host, std::move(*pending));
    Run(window);
    return true;
}

}  // namespace Tesk
