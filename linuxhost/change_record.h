// The Linux host's change record: before a change's first step the files the
// change may rewrite (our networkd files, /etc/hostname, a resolv.conf the
// backend owns) are kept, with the change's kind, process and deadline, in one
// file (/var/lib/tesk/change-record) replaced in one step. Putting back
// rewrites those files as they were, removes the files of ours the change
// added, and then calls the backend's hook that makes the running host follow
// them (networkd reads its files again, the agents' units start). A network
// change puts its networkd files on trial (linuxhost/networkd_trial.h) from
// Begin to Finish, which keeps them, or PutBack, which drops them.
#pragma once

#include <functional>

#include "hostctl/change_record.h"

namespace LinuxHost {

inline constexpr char kChangeRecordFile[] = "/var/lib/tesk/change-record";

class FileChangeRecord : public HostCtl::Changes::ChangeRecord {
public:
    using AfterPutBack = std::function<void(HostCtl::Changes::ChangeKind)>;
    explicit FileChangeRecord(AfterPutBack afterPutBack);

    void Begin(HostCtl::Changes::ChangeKind kind) const override;
    void SetRevertAt(std::int64_t revertAt) const override;
    void Finish() const override;
    void PutBack() const override;
    std::optional<HostCtl::Changes::PendingChange> Pending() const override;

private:
    AfterPutBack afterPutBack_;
};

}  // namespace LinuxHost
