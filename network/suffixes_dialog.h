// "Custom DNS Suffixes": the search domains as one text, separated by blanks
// or commas. Only letters, digits, blanks, dots, commas and hyphens can be
// typed; the text is taken as it stands.
#pragma once

#include <string>

#include "ui/form_dialog.h"

namespace Tesk {

class SuffixesDialog : public FormDialog {
public:
    SuffixesDialog(Window* opener, const std::string& suffixText);
    // After the dialog answered 1.
    const std::string& text() const;

private:
    InputItem* field_;
};

}  // namespace Tesk
