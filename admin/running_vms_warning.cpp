// The running virtual machines warning: a message with <Enter> to confirm.
#include "admin/running_vms_warning.h"

#include "ui/confirm_dialog.h"
#include "ui/footers.h"
#include "ui/string_ids.h"
#include "ui/strings.h"

namespace Tesk {

bool ConfirmRunningVms(Window* opener) {
    ConfirmDialog ask(opener, {60, 10, 7}, Str(StrId::VmsRunningWarning),
                      Str(StrId::VmsRunningAreYouSure), Footer::kEnterConfirmCancel,
                      ConfirmDialog::Enter());
    return Run(ask) == ConfirmDialog::kYes;
}

}  // namespace Tesk
