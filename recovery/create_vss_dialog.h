// "Create Standard Switch": a new standard switch by name, with one of the
// host's physical NICs as its uplink or none.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/host_context.h"
#include "ui/form_dialog.h"

namespace Tesk {

// run(): 1 when the switch was created, 0 when cancelled or failed. An
// invalid name, one already taken or an uplink in use is said and the form
// is shown again with what was typed.
class CreateVssDialog : public FormDialog {
public:
    CreateVssDialog(Window* opener, const HostContext& host);
    int run() override;

private:
    // The uplink chosen, empty for none.
    std::string chosenUplink() const;
    // The message of the first thing wrong with the input, or 0.
    std::uint32_t invalidInput(const std::string& name, const std::string& uplink) const;
    // Creates the switch with its uplink; false (logged) when it failed.
    bool create(const std::string& name, const std::string& uplink) const;

    const HostContext& host_;
    InputItem* name_ = nullptr;
    RadioGroup uplinks_;
    std::vector<std::string> pnics_;  // beside the choices after "None"
};

}  // namespace Tesk
