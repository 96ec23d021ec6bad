// Steps the robustness screen tests share: choosing a menu entry, and
// watching processes the console started end.
#pragma once

#include <signal.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "tests/session/session_support.h"

namespace SessionTest {

// The pane's heading (the selected entry) on a menu of cols columns.
inline std::string Heading(ConsoleSession& console, int cols) {
    std::string row = console.row(1);
    return static_cast<int>(row.size()) > cols / 2 + 2 ? row.substr(cols / 2 + 2) : "";
}

// Moves the menu's selection down until the pane's heading is entry.
inline bool SelectEntry(ConsoleSession& console, const std::string& entry, int cols) {
    for (int i = 0; i < 20 && Heading(console, cols) != entry; ++i) {
        const std::string before = Heading(console, cols);
        console.key(Key::Down);
        console.waitFor([&] { return Heading(console, cols) != before; }, "the selection moved",
                        std::chrono::milliseconds(500));
        console.waitForQuiet();
    }
    return Heading(console, cols) == entry;
}

// True when the process has ended (gone, or a zombie nobody reaped yet).
inline bool Gone(pid_t pid) {
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string line;
    if (!std::getline(stat, line)) return true;
    const auto close = line.rfind(')');
    return close != std::string::npos && line.compare(close + 2, 1, "Z") == 0;
}

inline bool GoneWithin(pid_t pid, std::chrono::seconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + TeskTest::Scaled(limit);
    while (!Gone(pid)) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

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
