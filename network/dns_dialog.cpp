#include "network/dns_dialog.h"

#include "network/apply_checks.h"
#include "ui/markup_escape.h"
#include "ui/string_ids.h"

namespace Tesk {

namespace HN = HostCtl::Network;

namespace {
enum Entry { kAutomatic, kManual, kPrimary, kAlternate, kHostname };
constexpr int kFieldWidth = 44;
constexpr std::size_t kServerLength = 64;
// The longest name the host takes.
constexpr std::size_t kHostnameLength = 255;

std::string Text(const HN::IpAddress* address) {
    return address ? address->GetStringAddress() : "";
}

bool ValidServer(const std::string& text) {
    return HN::Ipv4Address::IsValidAddress(text) || HN::Ipv6Address::IsValidAddress(text);
}

std::unique_ptr<HN::IpAddress> Server(const std::string& text) {
    if (text.empty()) return nullptr;
    if (HN::Ipv6Address::IsValidAddress(text)) return std::make_unique<HN::Ipv6Address>(text);
    return std::make_unique<HN::Ipv4Address>(text);
}
}  // namespace

std::uint32_t SecondServerLabel(const HN::IpAddress* primary, const HN::IpAddress* alternate) {
    return primary && alternate && primary->IsIpv4() && alternate->IsIpv6()
               ? StrId::Ipv6DnsServer
               : StrId::AlternateDnsServer;
}

DNSConfigurationDialog::DNSConfigurationDialog(Window* opener, bool dhcpDns, bool usingDhcp,
                                               const HN::IpAddress* primary,
                                               const HN::IpAddress* alternate, std::string hostname)
    : FormDialog(opener, {78, 17, 6}),
      dhcpDns_(dhcpDns && usingDhcp),
      primary_(primary ? primary->Clone() : nullptr),
      alternate_(alternate ? alternate->Clone() : nullptr),
      hostname_(std::move(hostname)) {
    setTitle(str(StrId::DnsConfigurationTitle));
    setBody(str(StrId::DnsAutomaticOnlyWithIpHelp));
    setFooter(Footer::kSelectMarkOkCancel);
    automatic_ =
        &items().emplace<ModeItem<RadioItem>>(str(StrId::ObtainDnsAutomatically), false, &group_);
    manual_ = &items().emplace<ModeItem<RadioItem>>(str(StrId::UseFollowingDns), false, &group_);
    automatic_->setEnabled(usingDhcp);
    manual_->setEnabled(usingDhcp);
    items().emplace<LabelItem>("");
    primaryField_ = &items().emplace<FilteredInputItem>(str(StrId::PrimaryDnsServer), Text(primary),
                                                        kFieldWidth, NetworkFilters::ServerAddress);
    alternateField_ = &items().emplace<WatchedInputItem>(
        str(SecondServerLabel(primary, alternate)), Text(alternate), kFieldWidth,
        NetworkFilters::ServerAddress, [this] {
            if (alternateField_->value().size() < 3)
                alternateField_->setLabel(str(StrId::AlternateDnsServer));
        });
    hostnameField_ = &items().emplace<FilteredInputItem>(str(StrId::Hostname), hostname_,
                                                         kFieldWidth, NetworkFilters::HostName);
    primaryField_->setMaxLength(kServerLength);
    alternateField_->setMaxLength(kServerLength);
    hostnameField_->setMaxLength(kHostnameLength);
    showMode();
}

void DNSConfigurationDialog::showMode() {
    group_.choose(dhcpDns_ ? *automatic_ : *manual_);
    for (InputItem* field : {primaryField_, alternateField_, hostnameField_})
        field->setEnabled(!dhcpDns_);
}

KeyResult DNSConfigurationDialog::onKey(int key) {
    const int entry = items().selectedOrdinal();
    if (key != ' ' || (entry != kAutomatic && entry != kManual)) return KeyResult::Ignored();
    dhcpDns_ = entry == kAutomatic;
    showMode();
    return KeyResult::Redraw();
}

KeyResult DNSConfigurationDialog::accept() {
    if (dhcpDns_) return KeyResult::Leave(1);
    for (auto [field, entry] :
         {std::pair{primaryField_, kPrimary}, {alternateField_, kAlternate}}) {
        if (field->value().empty() || ValidServer(field->value())) continue;
        MessageDialog message(this, StrId::InvalidDnsServerAddress, StrId::ReenterValidDnsServer);
        Run(message);
        items().selectByOrdinal(entry);
        return KeyResult::Redraw();
    }
    if (const std::string problem = HostnameProblem(hostnameField_->value()); !problem.empty()) {
        MessageDialog message(this, "Invalid Hostname", EscapeHostText(problem));
        Run(message);
        items().selectByOrdinal(kHostname);
        return KeyResult::Redraw();
    }
    primary_ = Server(primaryField_->value());
    alternate_ = Server(alternateField_->value());
    hostname_ = hostnameField_->value();
    return KeyResult::Leave(1);
}

}  // namespace Tesk
