// Restoring the host's defaults, then restarting it: a confirmation on <F11>,
// the host operation, and a screen that only <Enter> leaves, to restart. Two
// operations take this path: the reset of the system configuration and the
// removal of custom extensions; each brings its own texts and host operation.
#pragma once

#include <cstdint>

#include "hostctl/backend.h"
#include "ui/progress_dialog.h"

namespace Tesk {

struct ResetSteps {
    std::uint32_t confirmTitle, warning, question;  // the confirmation
    std::uint32_t workTitle, workMessage;           // while the command runs
    std::uint32_t doneMessage;                      // before the restart
    const char* logText;                            // the syslog line
    const char* event;                              // the observation event
    // The host operation; false when the host refused.
    bool (HostCtl::Configuration::HostConfiguration::*operation)() const;
};

// "Reset System Configuration".
extern const ResetSteps kFactoryReset;
// "Remove Custom Extensions".
extern const ResetSteps kRemoveCustomExtensions;

// Its run answers 0 when cancelled, when the operation failed (silently, after
// its log line) or when the restart could not be started; once the restart
// started it never returns.
class RestoreDialog : public ProgressDialog {
public:
    RestoreDialog(Window* opener, const HostCtl::Backend& host,
                  const ResetSteps& steps = kFactoryReset);
};

}  // namespace Tesk
