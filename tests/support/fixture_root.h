// A host root made for one test: a fresh directory under /tmp that the
// platform takes as the host's root until the test ends, with the helpers the
// Linux backend's tests use to lay out and read back its files.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "platform/hostroot.h"

namespace TeskTest {

class FixtureRootTest : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/tesk-root-XXXXXX";
        root_ = ::mkdtemp(pattern);
        Tesk::Platform::SetHostRootForTesting(root_);
    }
    void TearDown() override {
        Tesk::Platform::SetHostRootForTesting("");
        std::filesystem::remove_all(root_);
    }
    // Writes the file at the host path, making its directories.
    void Write(const std::string& hostPath, const std::string& text, mode_t mode = 0644) const {
        std::filesystem::create_directories(std::filesystem::path(root_ + hostPath).parent_path());
        std::ofstream(root_ + hostPath) << text;
        ::chmod((root_ + hostPath).c_str(), mode);
    }
    std::string Read(const std::string& hostPath) const {
        std::ostringstream text;
        text << std::ifstream(root_ + hostPath).rdbuf();
        return text.str();
    }
    bool Exists(const std::string& hostPath) const {
        return std::filesystem::exists(root_ + hostPath);
    }

    std::string root_;
};

}  // namespace TeskTest
