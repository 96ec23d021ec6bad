// The management network's adapters, their details and the in-use warning.
#include "network/adapters_dialog.h"

#include <algorithm>

#include "host/management_network.h"
#include "network/dialog_items.h"
#include "network/list_format.h"
#include "ui/keys.h"
#include "ui/markup_escape.h"
#include "ui/string_ids.h"
#include "ui/strings.h"

namespace Tesk {

AdaptersDialog::AdaptersDialog(Window* opener, const HostContext& host,
                               std::vector<std::string> selection, std::int32_t activeUplinks,
                               std::string managementSwitch)
    : FormDialog(opener, {78, 21, 7}),
      selection_(std::move(selection)),
      activeUplinks_(activeUplinks),
      managementSwitch_(std::move(managementSwitch)),
      loaded_(GetAdapters(host.backend, adapters_, owners_)) {
    if (!loaded_) return;
    setTitle(str(StrId::NetworkAdaptersTitle));
    setBody(str(StrId::SelectNetworkAdapters));
    setFooter(Footer::kDetailsToggleOkCancel);
    items().emplace<LabelItem>(std::string("    ") + kPnicRowHeader);
    for (const auto& adapter : adapters_) {
        const bool chosen =
            std::find(selection_.begin(), selection_.end(), adapter.name) != selection_.end();
        items().emplace<ModeItem<CheckItem>>(FormatPnicRow(adapter), chosen);
    }
}

int AdaptersDialog::run() {
    return loaded_ ? FormDialog::run() : 0;
}

CheckItem* AdaptersDialog::row(int ordinal) {
    // Row 0 is the header; the adapters follow in their order.
    if (ordinal < 0 || ordinal >= static_cast<int>(adapters_.size())) return nullptr;
    return static_cast<CheckItem*>(&items().at(static_cast<std::size_t>(ordinal) + 1));
}

KeyResult AdaptersDialog::onKey(int key) {
    const int ordinal = items().selectedOrdinal();
    CheckItem* item = row(ordinal);
    if (!item) return KeyResult::Ignored();
    const std::string& name = adapters_[static_cast<std::size_t>(ordinal)].name;
    if (key == ' ') {
        auto at = std::find(selection_.begin(), selection_.end(), name);
        if (item->checked()) {
            if (at != selection_.end()) selection_.erase(at);
            item->setChecked(false);
        } else {
            if (at == selection_.end()) selection_.push_back(name);
            item->setChecked(true);
        }
        return KeyResult::Redraw();
    }
    if (key == 'd' || key == 'D') {
        AdapterInfoDialog details(this, adapters_[static_cast<std::size_t>(ordinal)]);
        Run(details);
        return KeyResult::Redraw();
    }
    return KeyResult::Ignored();
}

KeyResult AdaptersDialog::accept() {
    for (const auto& name : selection_) {
        auto owner = owners_.find(name);
        if (owner == owners_.end() || owner->second.empty() || owner->second == managementSwitch_)
            continue;
        // Whatever the answer, the selection is taken: the apply step moves
        // the adapter over.
        UsedAdaptersDialog warning(this);
        Run(warning);
        break;
    }
    return KeyResult::Leave(1);
}

AdapterInfoDialog::AdapterInfoDialog(Window* opener, const PnicSummary& adapter)
    : ConfirmDialog(opener, {70, 13, 5}, "Adapter Details",
                    "Device Name: " + EscapeHostText(adapter.name), Footer::kOk,
                    ConfirmDialog::Enter()) {
    setEscapeResult(std::nullopt);
    setQuestion(FormatPnicDetails(adapter));
}

UsedAdaptersDialog::UsedAdaptersDialog(Window* opener)
    : ConfirmDialog(opener, {60, 11, 6}, Str(StrId::NetworkAdaptersWarning),
                    Str(StrId::AdaptersAlreadyInUse), Footer::kOkCancel, ConfirmDialog::Enter()) {
    setQuestion(Str(StrId::RemoveAdaptersFromConnections));
}

}  // namespace Tesk
