// The contract tests' base: the fixture of the chosen backend, a fresh host
// per test, and the checks of refused and failed calls.
#include "tests/contract/contract.h"

#include <stdexcept>

#include "hostctl/exception.h"

namespace TeskContract {

using HostCtl::Lib::HostCtlException;

void ContractTest::SetUp() {
    fixture_ = MakeChosenFixture();
    if (auto why = fixture_->WhyNoHost()) GTEST_SKIP() << *why;
}

void ContractTest::TearDown() {
    backend_.reset();  // before the host it serves
    fixture_.reset();
}

void ContractTest::Start(Shape shape) {
    if (shape == Shape::ManagedOnDistributedSwitch) Need(Capability::DistributedSwitches);
    if (IsSkipped()) return;
    backend_.reset();
    backend_ = fixture_->Start(shape);
}

void ContractTest::Need(Capability capability) {
    if (auto why = fixture_->Lacks(capability)) GTEST_SKIP() << *why;
}

void ContractTest::ExpectThrows(const HostCall& call, const std::string& text) {
    try {
        call(host());
        ADD_FAILURE() << "the call did not fail";
    } catch (const HostCtlException& e) {
        if (text.empty())
            EXPECT_STRNE(e.what(), "") << "a failure's text is what the console logs";
        else
            EXPECT_EQ(e.what(), text);
    } catch (const std::exception& e) {
        ADD_FAILURE() << "not a host-control failure: " << e.what();
    }
}

void ContractTest::ExpectRefused(const std::vector<Refusal>& cases, const HostViewer& view) {
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const std::string before = view(host());
        ExpectThrows(c.call, c.text);
        EXPECT_EQ(view(host()), before) << "a refused call changed the host";
    }
}

void ContractTest::ExpectFailures(const std::vector<Failure>& cases, const HostViewer& view) {
    Need(Capability::InjectedFailures);
    if (IsSkipped()) return;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.operation);
        const std::string before = view(host());
        const std::string text = "Injected failure of " + c.operation;
        fixture_->FailOperation(c.operation, text);
        ExpectThrows(c.call, text);
        fixture_->Recover();
        EXPECT_EQ(view(host()), before) << "a failed call changed the host";
    }
}

std::unique_ptr<HostCtl::Network::ZrkNic> Management(const HostCtl::Backend& host, bool load) {
    auto nic = host.GetNetworkInfo()->GetManagementInterface();
    if (!nic) throw std::logic_error("the host has no management interface");
    if (load) nic->Refresh();
    return nic;
}

}  // namespace TeskContract
