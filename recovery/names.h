// What the repair dialogs accept as names of the switches and port groups
// they create.
#pragma once

#include <string_view>

namespace Tesk {

// A standard switch: 1 to 31 characters, letters, digits, "-", "_" and ".".
bool ValidSwitchName(std::string_view name);

// A port group: 1 to 59 characters, letters, digits, "-", "_", "." and
// blanks, neither starting nor ending with a blank ("VM Network").
bool ValidPortGroupName(std::string_view name);

}  // namespace Tesk
