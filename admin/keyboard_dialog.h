// Choosing the console's keyboard layout from the layouts the host offers.
#pragma once

#include <string>
#include <vector>

#include "hostctl/backend.h"
#include "ui/form_dialog.h"

namespace Tesk {

class RadioItem;

// run(): 1 when a layout was applied (<Enter>), 0 on <Esc> or when applying
// failed. <Space> makes the selected layout the one choice; <Enter> loads and
// sets the chosen layout, which is the current one (applied again) until
// <Space> chose another, or the first offered when the current one is not
// offered.
class KeyboardDialog : public FormDialog {
public:
    KeyboardDialog(Window* opener, const HostCtl::Backend& host);

protected:
    KeyResult onKey(int key) override;
    KeyResult accept() override;

private:
    const HostCtl::Backend& host_;
    std::vector<std::string> layouts_;
    std::vector<RadioItem*> choices_;
    std::size_t chosen_ = 0;
};

}  // namespace Tesk
