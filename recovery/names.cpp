// Name rules of the repair dialogs.
#include "recovery/names.h"

#include <algorithm>

namespace Tesk {

namespace {

bool NameCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '_' || c == '.';
}

}  // namespace

bool ValidSwitchName(std::string_view name) {
    return !name.empty() && name.size() <= 31 &&
           std::all_of(name.begin(), name.end(), NameCharacter);
}

bool ValidPortGroupName(std::string_view name) {
    if (name.empty() || name.size() > 59 || name.front() == ' ' || name.back() == ' ') return false;
    return std::all_of(name.begin(), name.end(),
                       [](char c) { return c == ' ' || NameCharacter(c); });
}

}  // namespace Tesk
