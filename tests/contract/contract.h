// The base of every contract test: a fresh host of the backend under test,
// reached only through the HostCtl interfaces, and the two checks most cases
// share: a call that must fail does so with HostCtl::Lib::HostCtlException
// and leaves the host as it was.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "hostctl/backend.h"
#include "tests/contract/backend_fixture.h"
#include "tests/contract/host_view.h"

namespace TeskContract {

// A call on the host, for the tables of cases.
using HostCall = std::function<void(const HostCtl::Backend&)>;

// A call the host must refuse. An empty text accepts any text but the empty
// one; otherwise the text is part of the contract.
struct Refusal {
    std::string what;
    HostCall call;
    std::string text = {};
};

// An operation made to fail (its name as BackendFixture::FailOperation takes
// it) and a call that reaches it.
struct Failure {
    std::string operation;
    HostCall call;
};

class ContractTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Starts a fresh host of the shape, which host() then serves; skips the
    // test when the backend lacks the shape.
    void Start(Shape shape);
    // Skips the test, with the fixture's reason, when the backend lacks the
    // capability; call it from SetUp or last in a test.
    void Need(Capability capability);

    const HostCtl::Backend& host() const { return *backend_; }

    // Each call throws HostCtlException (with the case's text when it has one)
    // and the view of the host is the same afterwards.
    void ExpectRefused(const std::vector<Refusal>& cases, const HostViewer& view = HostView);
    // With each operation made to fail, its call throws HostCtlException with
    // the injected text, and the view of the host is the same afterwards.
    // Skips when the backend cannot make operations fail.
    void ExpectFailures(const std::vector<Failure>& cases, const HostViewer& view = HostView);

private:
    // Runs call, which must throw HostCtlException; text as in Refusal.
    void ExpectThrows(const HostCall& call, const std::string& text);

    std::unique_ptr<BackendFixture> fixture_;
    std::unique_ptr<HostCtl::Backend> backend_;
};

// The test suites of the shapes; each domain's file derives its own from one
// of them ("class DnsContract : public OnManagedHost {};").
template <Shape shape>
class OnHost : public ContractTest {
protected:
    void SetUp() override {
        ContractTest::SetUp();
        Start(shape);
    }
};
using OnManagedHost = OnHost<Shape::Managed>;
using OnBareHost = OnHost<Shape::Bare>;

// The management interface, loaded unless load is false; std::logic_error
// (a test failure) when the host has none.
std::unique_ptr<HostCtl::Network::ZrkNic> Management(const HostCtl::Backend& host,
                                                     bool load = true);

}  // namespace TeskContract
