// The record of a change that takes several steps on the host (the management
// network apply, the factory network restore, the standard-switch restore, the
// management agents' restart). Before the first step the backend keeps what the
// change will touch as it is; when the change is whole the record is dropped.
// A record still there at the next start means the change was cut short (or,
// with a deadline, that it waits to be kept): the previous state is put back,
// so the host is never left half old, half new. Interfaces only; a host
// backend (hostctl/backend.h) hands out the object.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace HostCtl::Changes {

enum class ChangeKind {
    ManagementNetwork,
    FactoryNetworkRestore,
    StandardSwitchRestore,
    AgentsRestart
};

// "management network", ... for log lines.
const char* ChangeKindName(ChangeKind kind);

struct PendingChange {
    ChangeKind kind = ChangeKind::ManagementNetwork;
    // The process that made the change, and whether it still runs.
    int owner = 0;
    bool ownerRunning = false;
    // Seconds since the epoch at which the previous state comes back unless
    // the change is kept first; 0 while the change is still being made.
    std::int64_t revertAt = 0;
};

class ChangeRecord {
public:
    virtual ~ChangeRecord() = default;
    // Records, in one step, that a change of kind starts and the previous
    // state it needs to be put back. Throws HostCtl::Lib::HostCtlException
    // when another change is recorded and not finished, or the host cannot
    // be written; nothing is recorded then.
    virtual void Begin(ChangeKind kind) const = 0;
    // Keeps the record after the change's last step until Finish() or
    // PutBack(), and past the process: at revertAt (seconds since the epoch)
    // or at the next start the previous state comes back. Throws like Begin.
    virtual void SetRevertAt(std::int64_t revertAt) const = 0;
    // The change is whole: the record is dropped. Nothing recorded: nothing.
    virtual void Finish() const = 0;
    // Puts the recorded previous state back in one step and drops the record.
    // Nothing recorded: nothing. Throws when the host cannot be written; the
    // record then stays.
    virtual void PutBack() const = 0;
    // The recorded change, none when there is none. Throws when the host
    // cannot be asked.
    virtual std::optional<PendingChange> Pending() const = 0;
};

}  // namespace HostCtl::Changes
