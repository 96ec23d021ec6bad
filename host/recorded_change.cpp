// The change record's use by the console: recording around a change, and
// putting back at start-up what an earlier run left unfinished.
#include "host/recorded_change.h"

#include <sys/time.h>
#include <unistd.h>

#include <optional>
#include <string>

#include "hostctl/try_call.h"
#include "platform/events.h"
#include "platform/syslog.h"

namespace Tesk {
namespace {

using HostCtl::Changes::ChangeKind;

}  // namespace

RecordedChange::RecordedChange(const HostCtl::Backend& backend, ChangeKind kind)
    : record_(backend.GetChangeRecord()), kind_(kind) {
    record_->Begin(kind);
}

RecordedChange::~RecordedChange() {
    if (!open_) return;
    Platform::Log(LOG_WARNING, "The %s change did not end; putting back the previous state",
                  HostCtl::Changes::ChangeKindName(kind_));
    if (PutBack() && kind_ == ChangeKind::ManagementNetwork)
        RecordNetworkRevert("the change did not end");
}

void RecordedChange::Finish() {
    open_ = false;
    TryHost("Dropping the change record failed: %s", [this] { record_->Finish(); });
}

bool RecordedChange::KeepUntil(std::int64_t revertAt) {
    return TryHost("Keeping the change record failed: %s", [&] { record_->SetRevertAt(revertAt); });
}

bool RecordedChange::PutBack() {
    open_ = false;
    return TryHost("Putting back the previous state failed: %s", [this] { record_->PutBack(); });
}

std::int64_t ChangeClockNow() {
    timeval now{};
    ::gettimeofday(&now, nullptr);
    return now.tv_sec;
}

bool RecoverUnfinishedChange(const HostCtl::Backend& backend, std::int64_t now) {
    std::optional<HostCtl::Changes::PendingChange> pending;
    std::unique_ptr<HostCtl::Changes::ChangeRecord> record;
    if (!TryHost("Reading the change record failed: %s", [&] {
            record = backend.GetChangeRecord();
            pending = record->Pending();
        }))
        return false;
    if (!pending) return false;
    const bool ownerWaits = pending->ownerRunning && pending->owner != ::getpid();
    const bool due = pending->revertAt != 0 && pending->revertAt <= now;
    if (ownerWaits && !due) return false;
    if (!TryHost("Putting back the previous state failed: %s", [&] { record->PutBack(); }))
        return false;
    const char* kind = HostCtl::Changes::ChangeKindName(pending->kind);
    Platform::Log(LOG_WARNING, "Put back the unfinished %s change left by process %d", kind,
                  pending->owner);
    if (pending->kind == ChangeKind::ManagementNetwork)
        RecordNetworkRevert(due ? "the deadline passed" : "the console ended before it was kept");
    return true;
}

void RecordNetworkRevert(const std::string& reason, const std::string& user) {
    AuditRecord audit{"tesk.network.revert", user, 1, {{"reason", reason}}};
    const std::string text = "Management network reverted: " + reason;
    PostEvent(LOG_WARNING, text, &audit, "@&!*@*@(nox.user.tesk.network.reverted)%s", text.c_str());
}

}  // namespace Tesk
