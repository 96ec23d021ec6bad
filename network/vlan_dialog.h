// "VLAN (optional)": the management port group's VLAN ID. Only digits can be
// typed; an empty field means no VLAN, 1 to 4094 are taken, 4095 after a
// warning, and anything else is refused until corrected or cancelled.
#pragma once

#include <cstdint>

#include "ui/form_dialog.h"

namespace Tesk {

class VlanDialog : public FormDialog {
public:
    // vlanId 0: no VLAN (the field starts empty).
    VlanDialog(Window* opener, std::uint16_t vlanId);
    // After the dialog answered 1: 0 when the field is empty, else its number.
    std::uint16_t value() const;

protected:
    KeyResult accept() override;

private:
    InputItem* field_;
};

}  // namespace Tesk
