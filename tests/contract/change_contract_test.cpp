// The contract of the change record: one change recorded at a time, with its
// kind, its process and its deadline; putting back restores what the host
// looked like before the change, finishing keeps the change.
#include <unistd.h>

#include "tests/contract/contract.h"

namespace {

using namespace TeskContract;
using HostCtl::Backend;
using HostCtl::Changes::ChangeKind;

class ChangeContract : public OnManagedHost {
protected:
    // A change of the host name, which every host view shows.
    void Change() { host().GetDnsConfig("defaultNetStack")->SetHostname("changed-host", true); }
};

TEST_F(ChangeContract, PutBackRestoresTheHostAndFinishKeepsTheChange) {
    auto record = host().GetChangeRecord();
    EXPECT_FALSE(record->Pending());
    const std::string before = HostView(host());

    record->Begin(ChangeKind::ManagementNetwork);
    auto pending = record->Pending();
    ASSERT_TRUE(pending);
    EXPECT_EQ(pending->kind, ChangeKind::ManagementNetwork);
    EXPECT_EQ(pending->owner, ::getpid());
    EXPECT_TRUE(pending->ownerRunning);
    EXPECT_EQ(pending->revertAt, 0);
    ExpectRefused({{"a second change while one is recorded", [](const Backend& b) {
                        b.GetChangeRecord()->Begin(ChangeKind::AgentsRestart);
                    }}});

    Change();
    record->SetRevertAt(1234567890);
    EXPECT_EQ(record->Pending()->revertAt, 1234567890);
    record->PutBack();
    EXPECT_FALSE(record->Pending());
    EXPECT_EQ(HostView(host()), before);

    record->Begin(ChangeKind::ManagementNetwork);
    Change();
    record->Finish();
    EXPECT_FALSE(record->Pending());
    EXPECT_NE(HostView(host()), before);
    record->PutBack();  // nothing recorded: nothing happens
    EXPECT_NE(HostView(host()), before);
}

}  // namespace
