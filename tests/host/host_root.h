// A fresh simulated host root per test, made by tesk-sim, with helpers to put
// small script children in place of host tools and to read the syslog mirror.
#pragma once

#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "platform/hostroot.h"
#include "sim/state.h"

namespace TeskTest {

class HostRootTest : public ::testing::Test {
  protected:
    void SetUp() override {
        char pattern[] = "/tmp/tesk-host-test.XXXXXX";
        ASSERT_NE(::mkdtemp(pattern), nullptr);
        root_ = pattern;
        std::string command = std::string(TESK_SIM_BINARY) + " init " + root_ + " >/dev/null";
        ASSERT_EQ(std::system(command.c_str()), 0) << command;
        Tesk::Platform::SetHostRootForTesting(root_);
    }

    void TearDown() override {
        Tesk::Platform::SetHostRootForTesting("");
        std::error_code ec;
        if (!std::getenv("TESK_KEEP_ROOTS")) std::filesystem::remove_all(root_, ec);
    }

    std::string Path(const std::string& hostPath) const { return root_ + hostPath; }

    // Replaces the host tool at hostPath by a shell script with this body.
    void WriteScript(const std::string& hostPath, const std::string& body) const {
        std::filesystem::create_directories(std::filesystem::path(Path(hostPath)).parent_path());
        std::filesystem::remove(Path(hostPath));
        std::ofstream(Path(hostPath)) << "#!/bin/sh\n" << body << "\n";
        ::chmod(Path(hostPath).c_str(), 0755);
    }

    // A script that appends its arguments as one line to a record file and
    // exits with the given status (a shell expression).
    void WriteRecorder(const std::string& hostPath, const std::string& status = "0") const {
        WriteScript(hostPath, "echo \"$*\" >> " + Path("/tmp/calls") + "\nexit " + status);
    }

    std::string Calls() const { return Read("/tmp/calls"); }

    std::string Read(const std::string& hostPath) const {
        std::ifstream in(Path(hostPath));
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }

    std::string Syslog() const { return Read("/var/log/syslog.log"); }

    bool Logged(const std::string& text) const { return Syslog().find(text) != std::string::npos; }

    void SetFault(const std::string& name, const Sim::Json& fault) const {
        Sim::Update([&](Sim::Json& state) { state["faults"][name] = fault; });
    }

    std::string root_;
};

}  // namespace TeskTest
