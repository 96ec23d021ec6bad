#include "admin/lockdown_dialog.h"

#include <string>

#include "host/runner.h"
#include "platform/syslog.h"
#include "ui/footers.h"
#include "ui/items.h"
#include "ui/string_ids.h"

namespace Tesk {

namespace {

constexpr DialogSize kSize{70, 11, 6};

}  // namespace

LockdownDialog::LockdownDialog(Window* opener) : FormDialog(opener, kSize) {
    setTitle(str(StrId::ConfigureLockdownModeTitle));
    setBody(str(StrId::LockdownModeHelp));
    setFooter(Footer::kToggleOkCancel);
    enabled_ = RuxCmdGet("ruxsvc/auth/lockdown_is_enabled");
    check_ = &items().emplace<CheckItem>(str(StrId::EnableLockdownMode), enabled_);
}

KeyResult LockdownDialog::accept() {
    const bool wanted = check_->checked();
    if (wanted == enabled_) return KeyResult::Leave(enabled_ ? 1 : 0);
    if (switchLockdown(wanted)) enabled_ = wanted;
    return KeyResult::Leave(1);
}

bool LockdownDialog::switchLockdown(bool enter) {
    const char* command =
        enter ? "ruxsvc/auth/lockdown_mode_enter" : "ruxsvc/auth/lockdown_mode_exit";
    const char* argv[] = {"rux-cmd", "-U", kServiceAccount, command, nullptr};
    char output[kCaptureBufferSize] = {};
    char error[kCaptureBufferSize] = {};
    int outputLength = kCaptureCapacity;
    int errorLength = kCaptureCapacity;
    // Bounded like the lockdown query, so a hung tool cannot hold the menu.
    const CommandOutcome outcome =
        RunCommandDetailed("/bin/rux-cmd", argv, output, &outputLength, error, &errorLength,
                           nullptr, 0, kQueryTimeLimit);
    if (outcome.result() == 0) {
        Platform::Log(LOG_INFO, enter ? "Lockdown mode enabled" : "Lockdown mode disabled");
        return true;
    }
    std::string text =
        CollapseWhitespace(std::string_view(error, errorLength > 0 ? errorLength : 0));
    // A tool that said nothing: how it ended is the error.
    if (text.empty()) text = outcome.describe();
    Platform::Log(LOG_ERR,
                  enter ? "Enabling lockdown mode failed with error: %s"
                        : "Disabling lockdown mode failed with error: %s",
                  text.c_str());
    return false;
}

}  // namespace Tesk
