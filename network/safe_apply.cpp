// The management network written with checks around it and a way back
// (docs/safe-apply.md).
#include "network/safe_apply.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "host/recorded_change.h"
#include "hostctl/exception.h"
#include "hostctl/try_call.h"
#include "network/apply_changes.h"
#include "network/apply_checks.h"
#include "network/check_after_apply.h"
#include "network/network_window.h"
#include "network/revert_countdown.h"
#include "platform/syslog.h"
#include "ui/confirm_dialog.h"
#include "ui/markup_escape.h"
#include "ui/string_ids.h"
#include "ui/strings.h"

namespace Tesk {
namespace {

using HostCtl::Changes::ChangeKind;

// The body's width in a dialog 78 wide.
constexpr int kBodyWidth = 72;
constexpr char kApplyAnywayFooter[] =
    "{color:black}<A>{/color} {color:dark-grey}Apply Anyway{/color}{align:right}"
    "{color:black}<Esc>{/color} {color:dark-grey}Go Back{/color}{/align}";

// The problems found before writing; true when the administrator applies
// anyway.
bool ApplyAnyway(Window* opener, const std::vector<std::string>& problems) {
    std::string body;
    int rows = 0;
    for (const auto& problem : problems) {
        body += "- " + EscapeHostText(problem) + "\n";
        rows += static_cast<int>(problem.size() + 2 + kBodyWidth - 1) / kBodyWidth;
    }
    // As tall as the problems need, up to the tallest dialog of 80x25.
    const int upper = std::min(rows + 5, 15);
    ConfirmDialog ask(opener, {78, upper + 6, upper}, "Configure Management Network: Check", body,
                      kApplyAnywayFooter, {{'A', ConfirmDialog::kYes}, {'a', ConfirmDialog::kYes}});
    ask.setQuestion("Go back and correct the settings, or apply them anyway?");
    const bool anyway = Run(ask) == ConfirmDialog::kYes;
    for (const auto& problem : problems)
        Platform::Log(LOG_WARNING, "%s %s",
                      anyway ? "Applied anyway:" : "Went back:", problem.c_str());
    return anyway;
}

std::optional<bool> LinkOf(const HostCtl::Backend& backend, const std::string& name) {
    return TryHost("Reading the link of an adapter failed: %s", [&] {
        auto pnic = backend.GetPnic(name);
        pnic->Refresh();
        return pnic->IsLinkUp();
    });
}

std::optional<std::int64_t> RevertAt(const HostCtl::Backend& backend) {
    auto pending = TryHost("Reading the change record failed: %s",
                           [&backend] { return backend.GetChangeRecord()->Pending(); });
    if (!pending || !*pending || (*pending)->revertAt == 0) return std::nullopt;
    return (*pending)->revertAt;
}

// Puts the previous settings back through the apply procedure, then the
// recorded state exactly, records why and shows the checks again.
void Revert(Window* opener, const HostContext& host, std::optional<PendingNetworkConfig>& previous,
            RecordedChange& change, const std::string& reason) {
    Platform::Log(LOG_INFO, "Reverting the management network");
    if (previous) {
        previous->changed = true;
        previous->ipv6GatewayChanged = previous->ipv6Pending;
        ApplyNetworkChanges(opener, host, *previous, nullptr);
    }
    change.PutBack();
    RecordNetworkRevert(reason, host.user);
    RunChecksAfterApplying(opener, host, "Checking Previous Management Network", true);
}

}  // namespace

int RevertTimeoutSeconds(const HostCtl::Backend& backend) {
    auto option = TryHost("Reading the revert timeout failed: %s", [&backend] {
        return backend.GetAdvancedOptions()->GetOption(kRevertTimeoutOption);
    });
    if (!option || !*option) return kRevertTimeoutDefault;
    const auto& value = **option;
    const bool integer = value.type == HostCtl::Adv::OptionValue::Type::Integer;
    if (!integer || value.intValue < kRevertTimeoutMin || value.intValue > kRevertTimeoutMax) {
        Platform::Log(LOG_WARNING, "%s is not a number from %d to %d; using %d seconds",
                      kRevertTimeoutOption, kRevertTimeoutMin, kRevertTimeoutMax,
                      kRevertTimeoutDefault);
        return kRevertTimeoutDefault;
    }
    return static_cast<int>(value.intValue);
}

bool SafelyApplyNetworkChanges(Window* opener, const HostContext& host,
                               PendingNetworkConfig& pending,
                               const std::function<void()>& summaryChanged) {
    const auto problems = ProblemsBeforeApplying(
        pending, [&host](const std::string& name) { return LinkOf(host.backend, name); });
    if (!problems.empty() && !ApplyAnyway(opener, problems)) return false;

    // What the host has now is what a revert puts back.
    std::optional<PendingNetworkConfig> previous = LoadPendingNetworkConfig(opener, host);
    std::optional<RecordedChange> change;
    try {
        change.emplace(host.backend, ChangeKind::ManagementNetwork);
    } catch (const HostCtl::Lib::HostCtlException& e) {
        const std::string message =
            std::string("The management network was not changed: ") + e.what();
        Platform::Log(LOG_ERR, "%s", message.c_str());
        MessageDialog error(opener, Str(StrId::EnableManagementNetworkError),
                            EscapeHostText(message));
        Run(error);
        return true;
    }

    ApplyNetworkChanges(opener, host, pending, summaryChanged, [&change] { change->Finish(); });
    // Switching IPv6 restarts the host; there is nothing to check before.
    if (pending.ipv6Pending != pending.ipv6Host) {
        change->Finish();
        return true;
    }

    const auto failed = RunChecksAfterApplying(opener, host, "Checking Management Network", false);
    if (!failed) {
        change->Finish();
        return true;
    }
    const int seconds = RevertTimeoutSeconds(host.backend);
    const std::int64_t deadline = ChangeClockNow() + seconds;
    Platform::Log(LOG_WARNING,
                  "Management network check \"%s\" failed; the previous settings come back in "
                  "%d seconds unless the change is kept",
                  failed->c_str(), seconds);
    const bool recorded = change->KeepUntil(deadline);
    RevertCountdownDialog ask(
        opener, *failed,
        [&]() -> std::optional<std::int64_t> {
            if (!recorded) return deadline;
            return RevertAt(host.backend);
        },
        &ChangeClockNow);
    switch (Run(ask)) {
        case RevertCountdownDialog::kKeep:
            change->Finish();
            Platform::Log(LOG_INFO, "Management network change kept although \"%s\" failed",
                          failed->c_str());
            return true;
        case RevertCountdownDialog::kGone:
            Platform::Log(LOG_INFO, "The management network change is no longer pending");
            return true;
        case RevertCountdownDialog::kRevert:
            Revert(opener, host, previous, *change,
                   "the check \"" + *failed +
                       "\" failed and the administrator chose "
                       "to revert");
            return true;
        default:
            Revert(opener, host, previous, *change,
                   "the check \"" + *failed + "\" failed and nobody kept the change in " +
                       std::to_string(seconds) + " seconds");
            return true;
    }
}

}  // namespace Tesk
