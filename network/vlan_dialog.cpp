#include "network/vlan_dialog.h"

#include <string>

#include "ui/input_items.h"
#include "ui/string_ids.h"

namespace Tesk {

namespace {
constexpr std::uint16_t kAllVlans = 4095;
}

VlanDialog::VlanDialog(Window* opener, std::uint16_t vlanId) : FormDialog(opener, {70, 12, 6}) {
    setTitle(str(StrId::VlanOptional));
    setBody(str(StrId::VlanUnsureHelp));
    setFooter(Footer::kOkCancel);
    field_ = &items().emplace<NumericInputItem>(str(StrId::VlanIdPrompt),
                                                vlanId ? std::to_string(vlanId) : "", 5, 5);
}

std::uint16_t VlanDialog::value() const {
    // At most five digits: the number always fits before it is checked.
    return field_->value().empty() ? 0 : static_cast<std::uint16_t>(std::stoul(field_->value()));
}

KeyResult VlanDialog::accept() {
    if (field_->value().empty()) return KeyResult::Leave(1);
    const unsigned long id = std::stoul(field_->value());
    if (id >= 1 && id < kAllVlans) return KeyResult::Leave(1);
    if (id == kAllVlans) {
        // A message's band of 7 rows shows three; this text needs five.
        MessageDialog warning(this, str(StrId::Warning), str(StrId::VlanId4095Warning),
                              {{70, 12, 9}, Footer::kOk, false});
        Run(warning);
        return KeyResult::Leave(1);
    }
    MessageDialog invalid(this, StrId::InvalidVlanId, StrId::ReenterValidVlanId);
    Run(invalid);
    return KeyResult::Redraw();
}

}  // namespace Tesk
