#include "session/session.h"

#include <limits>

#include "admin/acting_user.h"
#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "platform/syslog.h"

namespace Tesk {

Session::Session(bool localConsole) : localConsole_(localConsole), idleTimeout_(ReadIdleTimeout()) {
    SetKeySession(this);
}

Session::~Session() {
    SetKeySession(nullptr);
}

void Session::loggedIn(const std::string& user, bool emptyPassword) {
    user_ = user;
    SetActingUser(user);
    emptyPassword_ = emptyPassword;
    cardUserId_ = user;
    cardBound_ = CardWithUserIdPresent(user);
}

void Session::begin() {
    active_ = true;
    idleTimeout_ = ReadIdleTimeout();
}

void Session::end() {
    active_ = false;
    SetActingUser({});
}

bool Session::holdRestart() {
    if (!active_) return false;
    restartPending_ = true;
    return true;
}

void Session::checkCard() {
    if (!active_) {
        detectedCardUserId_ = ReadCardUserId();
        if (!detectedCardUserId_.empty())
            Platform::Log(LOG_INFO, "Found smart card with user id '%s'",
                          detectedCardUserId_.c_str());
        return;
    }
    if (cardBound_ && !CardWithUserIdPresent(cardUserId_)) {
        Platform::Log(LOG_INFO, "Logging out user id '%s'", cardUserId_.c_str());
        throw ExitRequest{0};
    }
}

int ReadIdleTimeout() {
    try {
        auto option =
            HostCtl::TheBackend().GetAdvancedOptions()->GetOption("/UserVars/TeskTimeOut");
        if (option && option->type == HostCtl::Adv::OptionValue::Type::Integer) {
            auto v = option->intValue;
            if (v < std::numeric_limits<int>::min()) return std::numeric_limits<int>::min();
            if (v > std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
            return static_cast<int>(v);
        }
    } catch (const HostCtl::Lib::HostCtlException&) {
    }
    return 600;
}

namespace {

// The user ids of every readable card, slot by slot, until accept says stop.
template <typename Accept>
bool AnyCardUserId(Accept accept) {
    std::unique_ptr<HostCtl::Hardware::SmartCardInfo> cards;
    std::vector<HostCtl::Hardware::SmartCardSlot> slots;
    try {
        cards = HostCtl::TheBackend().GetSmartCardInfo();
        slots = cards->GetAllSlots();
    } catch (const HostCtl::Lib::HostCtlException&) {
        return false;
    }
    for (const auto& slot : slots) {
        try {
            for (const auto& id : cards->GetToken(slot).userIds)
                if (accept(id)) return true;
        } catch (const HostCtl::Lib::HostCtlException&) {
        }
    }
    return false;
}

}  // namespace

bool CardWithUserIdPresent(const std::string& userId) {
    return AnyCardUserId([&](const std::string& id) { return id == userId; });
}

std::string ReadCardUserId() {
    std::string found;
    AnyCardUserId([&](const std::string& id) {
        found = id;
        return !id.empty();
    });
    return found;
}

}  // namespace Tesk
