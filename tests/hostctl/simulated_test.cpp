// What only the simulated host does and no screen test drives: the length of
// a host label. The behaviour every backend shares is the contract's
// (tests/contract); the account store's: the password screen tests.
#include <gtest/gtest.h>

#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "tests/hostctl/fixture.h"

namespace {

using HostCtl::Lib::HostCtlException;
using TeskTest::Json;

class SimulatedHostTest : public TeskTest::HostRootTest {
protected:
    HostCtl::Backend& host() { return HostCtl::TheBackend(); }
};

// A DNS label holds at most 63 characters (the refusals every backend shares:
// the contract's).
TEST_F(SimulatedHostTest, HostLabelsEndAtSixtyThreeCharacters) {
    auto dns = host().GetDnsConfig("defaultNetStack");
    EXPECT_NO_THROW(dns->SetHostname(std::string(63, 'a'), false));
    EXPECT_THROW(dns->SetHostname(std::string(64, 'b'), false), HostCtlException);
    EXPECT_THROW(dns->SetFqdn("host." + std::string(64, 'c') + ".example", false, ""),
                 HostCtlException);
    EXPECT_EQ(root().stateValue("/network/dns/hostname"), Json(std::string(63, 'a')));
}

}  // namespace
