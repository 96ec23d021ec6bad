// Stands in for the apply step until it lands: the question is asked as it
// will be, and answering yes writes nothing.
#include "network/apply_changes.h"
#include "ui/confirm_dialog.h"
#include "ui/footers.h"
#include "ui/string_ids.h"
#include "ui/strings.h"

namespace Tesk {

ApplyAnswer AskToApplyNetworkChanges(Window* opener, bool ipv6Switched) {
    ConfirmDialog ask(opener, {70, 15, 10}, Str(StrId::ConfigureManagementNetworkConfirm),
                      Str(StrId::ApplyNetworkChangesWarning), Footer::kYesNoCancel,
                      ConfirmDialog::YesNo());
    ask.setQuestion(
        Str(ipv6Switched ? StrId::ApplyChangesRebootHost : StrId::ApplyChangesRestartNetwork));
    switch (Run(ask)) {
        case ConfirmDialog::kYes:
            return ApplyAnswer::Yes;
        case ConfirmDialog::kNo:
            return ApplyAnswer::No;
        default:
            return ApplyAnswer::Cancel;
    }
}

void ApplyNetworkChanges(Window*, PendingNetworkConfig&, const std::function<void()>&) {}

}  // namespace Tesk
