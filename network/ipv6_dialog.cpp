#include "network/ipv6_dialog.h"

#include <cstdio>

#include "ui/string_ids.h"

namespace Tesk {

namespace HN = HostCtl::Network;

namespace {
// Selectable entries.
enum Entry { kDisable, kDynamic, kUseDhcpv6, kStatic, kFirstAddress, kGateway = 7 };
constexpr int kFieldWidth = 42;
// An address with prefix and zone fits with room to spare.
constexpr std::size_t kFieldLength = 64;
}  // namespace

IPv6ConfigurationDialog::IPv6ConfigurationDialog(Window* opener, bool enabled,
                                                 const HN::IpConfig& mode,
                                                 const HN::IpConfig& address)
    : FormDialog(opener, {78, 21, 7}),
      enabled_(enabled),
      dhcpv6_(mode.GetUseIpv6Dhcp()),
      routerAdvertised_(mode.GetUseIpv6RouterAdvertised()),
      result_(address) {
    setTitle(str(StrId::Ipv6ConfigurationTitle));
    setBody(str(StrId::Ipv6SettingsHelp));
    setFooter(Footer::kSelectMarkOkCancel);
    disable_ = &items().emplace<ModeItem<RadioItem>>(str(StrId::DisableIpv6RestartRequired), false,
                                                     &group_);
    dynamic_ = &items().emplace<ModeItem<RadioItem>>(str(StrId::UseDynamicIpv6), false, &group_);
    useDhcpv6_ = &items().emplace<ModeItem<CheckItem>>(str(StrId::UseDhcpv6), dhcpv6_, 4);
    static_ = &items().emplace<ModeItem<RadioItem>>(str(StrId::SetStaticIpv6), false, &group_);
    items().emplace<LabelItem>("");

    // The first three hand-configured, not link-local addresses go into the
    // fields and out of the list: OK puts back what the fields then hold.
    std::vector<HN::Ipv6Network> rest;
    std::vector<std::string> shown;
    for (const auto& net : address.GetIpv6Networks()) {
        if (shown.size() < 3 && net.GetIpv6AddressType() == HN::Ipv6AddressType::Static &&
            net.GetScope() != HN::Ipv6Scope::LinkLocal)
            shown.push_back(net.GetStringAddress());
        else
            rest.push_back(net);
    }
    result_.SetIpv6Networks(std::move(rest));
    shown.resize(3);
    for (int i = 0; i < 3; ++i) {
        char label[64];
        std::snprintf(label, sizeof label, "%s #%d", str(StrId::StaticAddress), i + 1);
        addresses_[i] = &items().emplace<WatchedInputItem>(
            label, shown[static_cast<std::size_t>(i)], kFieldWidth, NetworkFilters::Ipv6Text,
            [this] { edited_ = true; });
        addresses_[i]->setMaxLength(kFieldLength);
    }
    const HN::Ipv6Address& gateway = address.GetIpv6Gateway();
    gateway_ = &items().emplace<FilteredInputItem>(
        str(StrId::DefaultGatewayField),
        gateway.IsAnyAddress() ? "" : gateway.GetScopedStringAddress(), kFieldWidth,
        NetworkFilters::Ipv6Text);
    gateway_->setMaxLength(kFieldLength);
    showMode();
}

void IPv6ConfigurationDialog::showMode() {
    const bool dynamic = enabled_ && (dhcpv6_ || routerAdvertised_);
    const bool isStatic = enabled_ && !dynamic;
    group_.choose(!enabled_ ? *disable_ : dynamic ? *dynamic_ : *static_);
    useDhcpv6_->setChecked(dhcpv6_);
    useDhcpv6_->setEnabled(dynamic);
    for (InputItem* field : addresses_) field->setEnabled(isStatic);
    gateway_->setEnabled(enabled_ && !routerAdvertised_);
}

KeyResult IPv6ConfigurationDialog::onKey(int key) {
    if (key != ' ') return KeyResult::Ignored();
    switch (items().selectedOrdinal()) {
        case kDisable:
            enabled_ = false;
            break;
        case kDynamic:
            enabled_ = true;
            dhcpv6_ = useDhcpv6_->checked();
            routerAdvertised_ = !dhcpv6_;
            break;
        case kUseDhcpv6:
            enabled_ = true;
            dhcpv6_ = !useDhcpv6_->checked();
            routerAdvertised_ = !dhcpv6_;
            break;
        case kStatic:
            enabled_ = true;
            dhcpv6_ = routerAdvertised_ = false;
            break;
        default:
            return KeyResult::Ignored();
    }
    showMode();
    return KeyResult::Redraw();
}

KeyResult IPv6ConfigurationDialog::reject(int ordinal, std::uint32_t titleId,
                                          std::uint32_t textId) {
    MessageDialog message(this, titleId, textId);
    Run(message);
    items().selectByOrdinal(ordinal);
    return KeyResult::Redraw();
}

KeyResult IPv6ConfigurationDialog::accept() {
    if (!enabled_ || dhcpv6_ || routerAdvertised_) return KeyResult::Leave(1);
    HN::IpConfig result = result_;
    for (int i = 0; i < 3; ++i) {
        const std::string& text = addresses_[i]->value();
        if (text.empty()) continue;
        if (!HN::Ipv6Network::IsValidAddressAndNetmask(text))
            return reject(kFirstAddress + i, StrId::InvalidIpAddress,
                          StrId::ReenterValidIpv6Network);
        HN::Ipv6Network net(text);
        if (net.GetAddress().IsLinkLocal())
            return reject(kFirstAddress + i, StrId::InvalidScope, StrId::LinkLocalNotStatic);
        net.SetIpv6AddressType(HN::Ipv6AddressType::Static);
        net.SetScope(HN::Ipv6Scope::Global);
        result.AddIpv6Network(net);
    }
    if (!HN::Ipv6Address::IsValidAddress(gateway_->value()))
        return reject(kGateway, StrId::InvalidGatewayAddress, StrId::ReenterValidIpv6Gateway);
    result.SetIpv6Gateway(HN::Ipv6Address(gateway_->value()));
    result_ = std::move(result);
    return KeyResult::Leave(1);
}

}  // namespace Tesk
