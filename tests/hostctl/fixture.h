// A simulated host root that the host-control code in this process talks to,
// through the simulated host backend and its platform hooks.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "hostctl/backend.h"
#include "platform/hostroot.h"
#include "simhost/backend.h"
#include "simhost/platform_nodes.h"
#include "tests/harness/sim_root.h"

namespace TeskTest {

class HostRootTest : public ::testing::Test {
protected:
    void UseProfile(const std::string& profile) {
        root_ = std::make_unique<SimRoot>(profile);
        Tesk::Platform::SetHostRootForTesting(root_->path());
        Tesk::Platform::InstallHostPlatform(ZrkCtl::MakeSimulatedPlatform());
        HostCtl::SetBackend(ZrkCtl::MakeSimulatedBackend());
    }
    void SetUp() override { UseProfile("default"); }
    void TearDown() override {
        Tesk::Platform::SetHostRootForTesting("");
        Tesk::Platform::InstallHostPlatform(nullptr);
    }

    SimRoot& root() { return *root_; }

private:
    std::unique_ptr<SimRoot> root_;
};

}  // namespace TeskTest
