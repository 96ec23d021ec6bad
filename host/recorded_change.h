// Making a change of several steps whole or nothing through the backend's
// change record (hostctl/change_record.h), and finishing what an earlier run
// left: at start-up a recorded change whose process is gone, or whose
// deadline has passed, is put back and the putting back is recorded like any
// administrative action.
#pragma once

#include <cstdint>
#include <memory>

#include "hostctl/backend.h"

namespace Tesk {

// Records the change before its first step; Finish() when it is whole. A
// change this process leaves unfinished (an exception, a quit signal) is put
// back when the object goes; one cut short by a kill stays recorded, and the
// next start puts the previous state back.
class RecordedChange {
public:
    // Throws HostCtl::Lib::HostCtlException when the change cannot be
    // recorded (another change is pending, the host cannot be written): the
    // change must not start then.
    RecordedChange(const HostCtl::Backend& backend, HostCtl::Changes::ChangeKind kind);
    ~RecordedChange();
    RecordedChange(const RecordedChange&) = delete;
    RecordedChange& operator=(const RecordedChange&) = delete;
    // Drops the record: the change stays as made. A failure is logged.
    void Finish();
    // The record stays past this process until revertAt (seconds since the
    // epoch). A failure is logged; false then.
    bool KeepUntil(std::int64_t revertAt);
    // Puts the recorded state back at once. A failure is logged; false then.
    bool PutBack();

private:
    std::unique_ptr<HostCtl::Changes::ChangeRecord> record_;
    HostCtl::Changes::ChangeKind kind_;
    bool open_ = true;
};

// Seconds since the epoch, as the change records count them.
std::int64_t ChangeClockNow();

// At start-up: a recorded change whose process no longer runs, or whose
// deadline is before now, is put back ("Put back the unfinished %s change
// left by process %d"), with an audit record and an observation event. True
// when something was put back. Failures are logged, never thrown.
bool RecoverUnfinishedChange(const HostCtl::Backend& backend, std::int64_t now);

// Records a revert of the management network, whatever put it back:
// "Management network reverted: %s" (reason), audit "tesk.network.revert"
// as user (the host's administrator when the console put it back by itself)
// and the event nox.user.tesk.network.reverted.
void RecordNetworkRevert(const std::string& reason, const std::string& user = "root");

}  // namespace Tesk
