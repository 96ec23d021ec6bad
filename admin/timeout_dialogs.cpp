// The shell and console timeout dialogs.
#include "admin/timeout_dialogs.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "host/runner.h"
#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "platform/syslog.h"
#include "ui/footers.h"
#include "ui/input_items.h"
#include "ui/markup_escape.h"
#include "ui/string_ids.h"
#include "ui/strings.h"

namespace Tesk {
namespace {

constexpr const char kShellTimeout[] = "/UserVars/KovixShellTimeOut";
constexpr const char kShellIdleTimeout[] = "/UserVars/KovixShellInteractiveTimeOut";
constexpr const char kTeskTimeout[] = "/UserVars/TeskTimeOut";
// Long enough for any number that is still in range.
constexpr std::size_t kFieldLength = 12;
constexpr int kFieldWidth = 14;

bool ShellTimeoutChar(char32_t c) {
    return CharFilters::Digits(c) || c == '-';
}

// An advanced option in minutes, through the host's option tool (which answers
// in seconds).
int ReadOptionMinutes(const char* option) {
    const char* argv[] = {"kovacfg-advcfg", "-q", "-g", option, nullptr};
    char out[kCaptureBufferSize] = {};
    int length = kCaptureCapacity;
    const int rc =
        RunCommand("/sbin/kovacfg-advcfg", argv, out, &length, nullptr, nullptr, nullptr, 0, 0);
    if (rc != 0 || length <= 0) {
        Platform::Log(LOG_ERR, "Unable to read %s", option);
        return 0;
    }
    // The last byte is the line feed.
    out[length - 1] = '\0';
    return static_cast<int>(std::strtol(out, nullptr, 10) / 60);
}

// Sets an integer option through the host command tool, or its local variant
// when that fails.
bool WriteOptionSeconds(const char* option, unsigned long long seconds) {
    const std::string value = std::to_string(seconds);
    const char* argv[] = {"kovacli", "system", "settings", "advanced",    "set",
                          "-o",      option,   "-i",       value.c_str(), nullptr};
    if (RunCommand("/sbin/kovacli", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0) == 0)
        return true;
    argv[0] = "kovacli-local";
    if (RunCommand("/sbin/kovacli-local", argv, nullptr, nullptr, nullptr, nullptr, nullptr, 0,
                   0) == 0)
        return true;
    Platform::Log(LOG_ERR, "Unable to set %s", option);
    return false;
}

// A running service takes a new timeout when it restarts.
void RestartIfRunning(const char* script) {
    const char* status[] = {"sh", script, "status", nullptr};
    if (RunCommand("/bin/sh", status, nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0) != 0)
        return;
    const char* restart[] = {"sh", script, "restart", nullptr};
    RunCommand("/bin/sh", restart, nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0);
}

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

ShellTimeoutDialog::ShellTimeoutDialog(Window* opener) : FormDialog(opener, {70, 21, 15}) {
    setTitle(Str(StrId::SetShellTimeouts));
    setBody(Str(StrId::SetShellTimeoutsHelp));
    setFooter(Footer::kOkCancel);
    const int availability = ReadOptionMinutes(kShellTimeout);
    const int idle = ReadOptionMinutes(kShellIdleTimeout);
    auto& a = items().emplace<FilteredInputItem>(Str(StrId::AvailabilityTimeout),
                                                 std::to_string(availability), kFieldWidth,
                                                 ShellTimeoutChar);
    auto& i = items().emplace<FilteredInputItem>(Str(StrId::IdleTimeout), std::to_string(idle),
                                                 kFieldWidth, ShellTimeoutChar);
    a.setMaxLength(kFieldLength);
    i.setMaxLength(kFieldLength);
    availability_ = {kShellTimeout,
                     &a,
                     availability,
                     true,
                     "Disabled Shell timeout",
                     "Modified Shell timeout to %d minutes"};
    idle_ = {kShellIdleTimeout,
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
    if (!WriteOptionSeconds(field.option, *minutes * 60)) return true;
    field.minutes = n;
    if (field.restartServices) {
        RestartIfRunning("/etc/init.d/KovaShell");
        RestartIfRunning("/etc/init.d/SSH");
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

TeskTimeoutDialog::TeskTimeoutDialog(Window* opener, int currentSeconds,
                                     std::function<void(int)> rearm)
    : FormDialog(opener, {70, 14, 9}), currentSeconds_(currentSeconds), rearm_(std::move(rearm)) {
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
        HostCtl::TheBackend().GetAdvancedOptions()->SetIntOption(kTeskTimeout, seconds);
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
