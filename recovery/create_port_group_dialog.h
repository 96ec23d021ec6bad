// "Create Port Group": a new port group by name on one of the host's
// standard switches.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/host_context.h"
#include "ui/form_dialog.h"

namespace Tesk {

// run(): 1 when the port group was created, 0 when cancelled or failed. An
// invalid or taken name is said and the form shown again.
class CreatePortGroupDialog : public FormDialog {
public:
    CreatePortGroupDialog(Window* opener, const HostContext& host);
    int run() override;

private:
    const HostContext& host_;
    InputItem* name_ = nullptr;
    RadioGroup switches_;
    std::vector<std::string> switchNames_;
};

}  // namespace Tesk
