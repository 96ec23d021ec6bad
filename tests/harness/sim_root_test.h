// A fixture for in-process tests against a fresh simulated host root: the
// root is made by SimRoot and is this process's host root while a test runs,
// served by the simulated host backend and its platform hooks.
#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "hostctl/backend.h"
#include "platform/hostroot.h"
#include "simhost/backend.h"
#include "simhost/platform_nodes.h"
#include "tests/harness/sim_root.h"

namespace TeskTest {

class SimRootTest : public ::testing::Test {
protected:
    void SetUp() override {
        sim_ = std::make_unique<SimRoot>();
        root_ = sim_->path();
        Tesk::Platform::SetHostRootForTesting(root_);
        Tesk::Platform::InstallHostPlatform(ZrkCtl::MakeSimulatedPlatform());
        HostCtl::SetBackend(ZrkCtl::MakeSimulatedBackend());
    }
    void TearDown() override {
        Tesk::Platform::SetHostRootForTesting("");
        Tesk::Platform::InstallHostPlatform(nullptr);
        sim_.reset();
    }

    const SimRoot& sim() const { return *sim_; }
    // A host path's file ("/var/log/syslog.log"; the leading slash may be
    // left out), empty when it does not exist.
    std::string Read(const std::string& hostPath) const {
        return sim_->tryReadFile(hostPath.starts_with('/') ? hostPath : "/" + hostPath)
            .value_or("");
    }

    std::string root_;

private:
    std::unique_ptr<SimRoot> sim_;
};

}  // namespace TeskTest
