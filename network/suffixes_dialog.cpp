#include "network/suffixes_dialog.h"

#include "network/dialog_items.h"
#include "ui/string_ids.h"

namespace Tesk {

namespace {
constexpr int kFieldWidth = 40;
// The host keeps at most this much of a search list.
constexpr std::size_t kTextLength = 255;
}  // namespace

SuffixesDialog::SuffixesDialog(Window* opener, const std::string& suffixText)
    : FormDialog(opener, {70, 13, 8}) {
    setTitle(str(StrId::CustomDnsSuffixes));
    setBody(str(StrId::DnsSuffixesHelp));
    setFooter(Footer::kOkCancel);
    field_ = &items().emplace<FilteredInputItem>(str(StrId::Suffixes), suffixText, kFieldWidth,
                                                 NetworkFilters::SuffixList);
    field_->setMaxLength(kTextLength);
}

const std::string& SuffixesDialog::text() const {
    return field_->value();
}

}  // namespace Tesk
