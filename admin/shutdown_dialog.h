// The shut down / restart question reached with <F12> from the welcome screen:
// <F2> shuts the host down, <F11> restarts it, <Space> toggles whether running
// virtual machines are terminated by force, <Esc> leaves.
#pragma once

#include "ui/form_dialog.h"

namespace Tesk {

class ShutdownDialog : public FormDialog {
public:
    explicit ShutdownDialog(Window* opener);

protected:
    KeyResult onKey(int key) override;
    // <Enter> does nothing here.
    KeyResult accept() override { return KeyResult::Handled(); }

private:
    CheckItem* force_;
};

}  // namespace Tesk
