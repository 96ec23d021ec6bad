// The simulated host's change record: "/pendingChange" of the state, holding
// the kind of change, its process, its deadline and a copy of the sections of
// the state the change touches, written in the same step as the state.
#pragma once

#include "hostctl/change_record.h"

namespace ZrkCtl::Changes {

class ChangeRecordImpl : public HostCtl::Changes::ChangeRecord {
public:
    void Begin(HostCtl::Changes::ChangeKind kind) const override;
    void SetRevertAt(std::int64_t revertAt) const override;
    void Finish() const override;
    void PutBack() const override;
    std::optional<HostCtl::Changes::PendingChange> Pending() const override;
};

}  // namespace ZrkCtl::Changes
