// Steps the robustness screen tests share: host tools replaced by scripts, and watching processes
// the console started end.
#pragma once

#include <signal.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "tests/session/session_support.h"
#include "tests/support/process_end.h"

namespace SessionTest {

// Waits (scaled for slow builds) until the process has ended.
inline bool GoneWithin(pid_t pid, std::chrono::seconds limit) {
    return TeskTest::GoneWithin(pid, TeskTest::Scaled(limit));
}
using TeskTest::Gone;

// Replaces the host tool at hostPath by a shell script; $R in the body is
// the root.
inline void ReplaceTool(const SimRoot& root, const std::string& hostPath, const std::string& body) {
    std::filesystem::remove(root.path(hostPath));
    root.writeFile(hostPath, "#!/bin/sh\nR=" + root.path("") + "\n" + body + "\n");
    ::chmod(root.path(hostPath).c_str(), 0755);
}

// A process id a script wrote to a file of the root; -1 until it is there.
inline pid_t PidIn(const SimRoot& root, const std::string& hostPath) {
    const std::string text = root.tryReadFile(hostPath).value_or("");
    return text.empty() ? -1 : std::stoi(text);
}

}  // namespace SessionTest
