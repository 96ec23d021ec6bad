// The shell and console timeout dialogs.
#include "admin/timeout_dialogs.h"

#include <cerrno>
#include <cstdlib>

#include "hostctl/exception.h"
#include "platform/syslog.h"
#include "ui/footers.h"
#include "ui/input_items.h"
#include "ui/markup_escape.h"
#include "ui/string_ids.h"
#include "ui/strings.h"

namespace Tesk {
namespace {

constexpr const char kTeskTimeout[] = "/UserVars/TeskTimeOut";
// Long enough for any number that is still in range.
constexpr std::size_t kFieldLength = 12;
constexpr int kFieldWidth = 14;

bool ShellTimeoutChar(char32_t c) {
    return CharFilters::Digits(c) || c == '-';
}

using HostCtl::Services::Service;
using HostCtl::Services::ShellTimeout;

void ShowOutOfRange(Window* over) {
    MessageDialog message(over, StrId::InvalidTimeoutValue, StrId::TimeoutValueRange);
    Run(message);
}

}  // namespace

std::optional<unsigned long long> ParseTimeoutMinutes(std::string_view text) {
    if (text.empty()) return std::nullopt;
    const bool negative = text.front() == '-';
    std::string_view digits = negative ? text.substr(1) : text;
    if (digits.empty() || digits.find_first_not_of("0123456789") != std::string_view::npos)
        return kMaxTimeoutMinutes + 1;
    const std::string copy(digits);
    errno = 0;
    unsigned long long value = std::strtoull(copy.c_str(), nullptr, 10);
    if (errno == ERANGE) return kMaxTimeoutMinutes + 1;
    // A negative value taken as unsigned is huge (only "-0" stays 0).
    if (negative && value != 0) return kMaxTimeoutMinutes + 1;
    return value;
}

ShellTimeoutDialog::ShellTimeoutDialog(Window* opener, const HostCtl::Backend& host)
    : FormDialog(opener, {70, 21, 15}), services_(host.GetShellServices()) {
    setTitle(Str(StrId::SetShellTimeouts));
    setBody(Str(StrId::SetShellTimeoutsHelp));
    setFooter(Footer::kOkCancel);
    // In minutes; a time-out the host cannot tell shows as none.
    auto minutes = [this](ShellTimeout timeout) {
        return static_cast<int>(services_->GetTimeoutSeconds(timeout).value_or(0) / 60);
    };
    const int availability = minutes(ShellTimeout::Availability);
    const int idle = minutes(ShellTimeout::Idle);
    auto& a = items().emplace<FilteredInputItem>(Str(StrId::AvailabilityTimeout),
                                                 std::to_string(availability), kFieldWidth,
                                                 ShellTimeoutChar);
    auto& i = items().emplace<FilteredInputItem>(Str(StrId::IdleTimeout), std::to_string(idle),
                                                 kFieldWidth, ShellTimeoutChar);
    a.setMaxLength(kFieldLength);
    i.setMaxLength(kFieldLength);
    availability_ = {ShellTimeout::Availability,
                     &a,
                     availability,
                     true,
                     "Disabled Shell timeout",
                     "Modified Shell timeout to %d minutes"};
    idle_ = {ShellTimeout::Idle,
             &i,
             idle,
             false,
             "Disabled shell interactive timeout",
             "Modified shell interactive timeout to %d minutes"};
}

bool ShellTimeoutDialog::apply(Field& field) {
    const auto minutes = ParseTimeoutMinutes(field.item->value());
    if (!minutes) return true;
    if (*minutes > kMaxTimeoutMinutes) {
        ShowOutOfRange(this);
        return false;
    }
    const int n = static_cast<int>(*minutes);
    if (n == field.minutes) return true;
    if (!services_->SetTimeoutSeconds(field.timeout, *minutes * 60)) return true;
    field.minutes = n;
    // A running service takes a new timeout when it restarts.
    if (field.restartServices) {
        services_->RestartIfRunning(Service::Shell);
        services_->RestartIfRunning(Service::Ssh);
    }
    if (n == 0)
        Platform::Log(LOG_INFO, "%s", field.disabledLine);
    else
        Platform::Log(LOG_INFO, field.modifiedLine, n);
    return true;
}

KeyResult ShellTimeoutDialog::accept() {
    if (!apply(availability_) || !apply(idle_)) return KeyResult::Redraw();
    return KeyResult::Leave(1);
}

TeskTimeoutDialog::TeskTimeoutDialog(Window* opener, const HostCtl::Backend& host,
                                     int currentSeconds, std::function<void(int)> rearm)
    : FormDialog(opener, {70, 14, 9}),
      host_(host),
      currentSeconds_(currentSeconds),
      rearm_(std::move(rearm)) {
    setTitle(Str(StrId::SetTeskIdleTimeout));
    setBody(Str(StrId::SetTeskIdleTimeoutHelp));
    setFooter(Footer::kOkCancel);
    field_ = &items().emplace<NumericInputItem>(Str(StrId::TeskIdleTimeout),
                                                std::to_string(currentSeconds / 60), kFieldWidth,
                                                kFieldLength);
}

KeyResult TeskTimeoutDialog::accept() {
    const auto minutes = ParseTimeoutMinutes(field_->value());
    if (!minutes) return KeyResult::Leave(1);
    if (*minutes > kMaxTimeoutMinutes) {
        ShowOutOfRange(this);
        return KeyResult::Redraw();
    }
    const int seconds = static_cast<int>(*minutes * 60);
    if (seconds == currentSeconds_) return KeyResult::Leave(1);
    try {
        host_.GetAdvancedOptions()->SetIntOption(kTeskTimeout, seconds);
    } catch (const HostCtl::Lib::HostCtlException& e) {
        // Nothing changed: the console keeps its timeout.
        Platform::Log(LOG_ERR, "Setting %s failed: %s", kTeskTimeout, e.what());
        MessageDialog message(this, Str(StrId::SetTeskIdleTimeout), EscapeHostText(e.what()));
        Run(message);
        return KeyResult::Redraw();
    }
    currentSeconds_ = seconds;
    if (rearm_) rearm_(seconds);
    if (*minutes == 0)
        Platform::Log(LOG_INFO, "%s", "Disabled Tesk timeout");
    else
        Platform::Log(LOG_INFO, "Modified Tesk timeout to %d minutes", static_cast<int>(*minutes));
    return KeyResult::Leave(1);
}

}  // namespace Tesk
