// The shut down / restart question reached with <F12> from the welcome screen:
// <F2> shuts the host down, <F11> restarts it, <Space> toggles whether running
// virtual machines are terminated by force, <Esc> leaves.
#pragma once

#include "ui/form_dialog.h"

namespace Tesk {

struct HostContext;

class ShutdownDialog : public FormDialog {
public:
    // host: the host to take down and the user who logged in for it.
    ShutdownDialog(Window* opener, const HostContext& host);

protected:
    KeyResult onKey(int key) override;
    // <Enter> does nothing here.
    KeyResult accept() override { return KeyResult::Handled(); }

private:
    const HostContext& host_;
    CheckItem* force_;
};

}  // namespace Tesk
