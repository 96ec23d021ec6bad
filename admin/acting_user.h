// The user the host-administration screens act as: the one who logged in last.
// The session sets it at each login and clears it when the session ends, so
// screens that are opened without a session object (the power screens, which
// the network screens also reach) run the management tool as that user.
#pragma once

#include <string>

namespace Tesk {

void SetActingUser(std::string user);
// Empty when nobody is logged in.
const std::string& ActingUser();

}  // namespace Tesk
