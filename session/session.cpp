#include "session/session.h"

#include <limits>

#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "platform/syslog.h"

namespace Tesk {

Session::Session(const HostCtl::Backend& host, bool localConsole)
    : host_(host), localConsole_(localConsole), idleTimeout_(ReadIdleTimeout(host)) {
    SetKeySession(this);
}

Session::~Session() {
    SetKeySession(nullptr);
}

void Session::loggedIn(const std::string& user, bool emptyPassword) {
    user_ = user;
    emptyPassword_ = emptyPassword;
    cardUserId_ = user;
    cardBound_ = CardWithUserIdPresent(host_, user);
}

void Session::begin() {
    active_ = true;
    idleTimeout_ = ReadIdleTimeout(host_);
}

void Session::end() {
    active_ = false;
}

bool Session::holdRestart() {
    if (!active_) return false;
    restartPending_ = true;
    return true;
}

void Session::checkCard() {
    if (!active_) {
        detectedCardUserId_ = ReadCardUserId(host_);
        if (!detectedCardUserId_.empty())
            Platform::Log(LOG_INFO, "Found smart card with user id '%s'",
                          detectedCardUserId_.c_str());
        return;
    }
    if (cardBound_ && !CardWithUserIdPresent(host_, cardUserId_)) {
        Platform::Log(LOG_INFO, "Logging out user id '%s'", cardUserId_.c_str());
        throw ExitRequest{0};
    }
}

int ReadIdleTimeout(const HostCtl::Backend& host) {
    try {
        auto option = host.GetAdvancedOptions()->GetOption("/UserVars/TeskTimeOut");
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
bool AnyCardUserId(const HostCtl::Backend& host, Accept accept) {
    std::unique_ptr<HostCtl::Hardware::SmartCardInfo> cards;
    std::vector<HostCtl::Hardware::SmartCardSlot> slots;
    try {
        cards = host.GetSmartCardInfo();
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

bool CardWithUserIdPresent(const HostCtl::Backend& host, const std::string& userId) {
    return AnyCardUserId(host, [&](const std::string& id) { return id == userId; });
}

std::string ReadCardUserId(const HostCtl::Backend& host) {
    std::string found;
    AnyCardUserId(host, [&](const std::string& id) {
        found = id;
        return !id.empty();
    });
    return found;
}

}  // namespace Tesk
