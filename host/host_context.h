// What a screen reaches the host through: the backend the program chose and
// the user it acts for. The program makes one per session (the welcome
// screen's before a login, the menu's after it) and hands it to every window
// it opens; nothing below finds the host any other way.
#pragma once

#include <string>

#include "hostctl/backend.h"

namespace Tesk {

struct HostContext {
    const HostCtl::Backend& backend;
    // The logged-in user the host tools run as; empty before a login.
    std::string user;
};

}  // namespace Tesk
