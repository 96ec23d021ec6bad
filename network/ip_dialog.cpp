#include "network/ip_dialog.h"

#include "ui/string_ids.h"

namespace Tesk {

namespace HN = HostCtl::Network;

namespace {
// Selectable entries: the three modes, then the three fields.
constexpr int kAddressEntry = 3, kNetmaskEntry = 4, kGatewayEntry = 5;
constexpr int kFieldWidth = 16;
constexpr std::size_t kFieldLength = 16;
}  // namespace

IPConfigurationDialog::IPConfigurationDialog(Window* opener, bool none, bool dhcp,
                                             const HN::IpConfig& address)
    : FormDialog(opener, {78, 19, 7}),
      mode_(dhcp   ? kDhcp
            : none ? kNone
                   : kStatic),
      result_(address) {
    setTitle(str(StrId::Ipv4ConfigurationTitle));
    setBody(str(StrId::Ipv4SettingsHelp));
    setFooter(Footer::kSelectMarkOkCancel);
    const std::uint32_t labels[] = {StrId::DisableIpv4, StrId::UseDynamicIpv4,
                                    StrId::SetStaticIpv4};
    for (int i = 0; i < 3; ++i)
        radios_[i] = &items().emplace<ModeItem<RadioItem>>(str(labels[i]), i == mode_, &group_);
    items().emplace<LabelItem>("");
    auto field = [&](std::uint32_t label, const HN::Ipv4Address& value) {
        auto& item = items().emplace<FilteredInputItem>(str(label), value.GetStringAddress(),
                                                        kFieldWidth, CharFilters::DigitsAndDots);
        item.setMaxLength(kFieldLength);
        return &item;
    };
    address_ = field(StrId::Ipv4Address, address.GetIpv4Address());
    netmask_ = field(StrId::SubnetMask, address.GetIpv4Netmask());
    gateway_ = field(StrId::DefaultGateway, address.GetIpv4Gateway());
    showMode();
}

void IPConfigurationDialog::showMode() {
    group_.choose(*radios_[mode_]);
    for (InputItem* f : {address_, netmask_, gateway_}) f->setEnabled(mode_ == kStatic);
}

KeyResult IPConfigurationDialog::onKey(int key) {
    const int entry = items().selectedOrdinal();
    if (key != ' ' || entry < 0 || entry > 2) return KeyResult::Ignored();
    mode_ = static_cast<Mode>(entry);
    showMode();
    return KeyResult::Redraw();
}

KeyResult IPConfigurationDialog::reject(int ordinal, std::uint32_t titleId, std::uint32_t textId) {
    MessageDialog message(this, titleId, textId);
    Run(message);
    items().selectByOrdinal(ordinal);
    return KeyResult::Redraw();
}

KeyResult IPConfigurationDialog::accept() {
    if (mode_ == kNone) result_.SetUseDhcp(false, true);
    if (mode_ == kDhcp) result_.SetUseDhcp(true);
    if (mode_ != kStatic) {
        result_.SetIpv4Gateway(HN::Ipv4Address());
        return KeyResult::Leave(1);
    }
    if (!HN::Ipv4Address::IsValidAddress(address_->value()))
        return reject(kAddressEntry, StrId::InvalidIpAddress, StrId::ReenterValidIpv4Address);
    if (!HN::Ipv4Address::IsValidAddress(netmask_->value()) ||
        !HN::Ipv4Address(netmask_->value()).IsValidNetmask())
        return reject(kNetmaskEntry, StrId::InvalidSubnet, StrId::ReenterValidSubnet);
    if (!HN::Ipv4Address::IsValidAddress(gateway_->value()))
        return reject(kGatewayEntry, StrId::InvalidGatewayAddress, StrId::ReenterValidGateway);
    result_.SetUseDhcp(false, false);
    result_.SetIpv4Address(HN::Ipv4Address(address_->value()));
    result_.SetIpv4Netmask(HN::Ipv4Address(netmask_->value()));
    result_.SetIpv4Gateway(HN::Ipv4Address(gateway_->value()));
    return KeyResult::Leave(1);
}

}  // namespace Tesk
