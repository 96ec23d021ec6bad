// "Restore Network Settings": the host's network reset to its factory layout,
// after the running virtual machines were powered off.
#pragma once

#include "host/host_context.h"
#include "ui/confirm_dialog.h"
#include "ui/progress_dialog.h"

namespace Tesk {

// The question, answered with <F11> only (<Enter> does nothing). run(): 1
// once <F11> was pressed, whatever the restore did; 0 on <Esc>. After <F11>
// it logs "Restoring factory network settings" and posts the matching event
// even when the restore was declined or failed.
class RestoreNetworkDialog : public ConfirmDialog {
public:
    RestoreNetworkDialog(Window* opener, const HostContext& host);
    int run() override;

private:
    const HostContext& host_;
};

// The restore itself, with its progress: when virtual machines run, asks
// first (the shared running-machines warning) and powers them off; switches
// the network dump target off; clears the network and configures it anew.
// A power-off that fails leaves the network as it was. run(): 0 when the
// warning was declined, else 1 after <Enter>. A host-control failure is not
// caught here: it reaches the caller.
class DoRestoreNetworkDialog : public ProgressDialog {
public:
    DoRestoreNetworkDialog(Window* opener, const HostContext& host);
};

}  // namespace Tesk
