// A fresh simulated host root per test, made by tesk-sim, with helpers to put
// small script children in place of host tools, to read the syslog mirror
// and to set the simulated tools' faults (tests/simtools).
#pragma once

#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "store/state.h"
#include "tests/harness/sim_root_test.h"

namespace TeskTest {

class HostRootTest : public SimRootTest {
protected:
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

    std::string Syslog() const { return Read("/var/log/syslog.log"); }

    bool Logged(const std::string& text) const { return Syslog().find(text) != std::string::npos; }

    void SetFault(const std::string& name, const Sim::Json& fault) const {
        sim().setFault(name, fault);
    }
};

}  // namespace TeskTest
