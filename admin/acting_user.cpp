// The user the host-administration screens act as (UI thread only).
#include "admin/acting_user.h"

#include <utility>

namespace Tesk {
namespace {
std::string& Current() {
    static std::string user;
    return user;
}
}  // namespace

void SetActingUser(std::string user) {
    Current() = std::move(user);
}

const std::string& ActingUser() {
    return Current();
}

}  // namespace Tesk
