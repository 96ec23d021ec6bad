// Watching a process end, for tests that check that nothing a program started
// outlives it.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <fstream>
#include <string>
#include <thread>

namespace TeskTest {

// True when the process has ended (gone, or a zombie nobody reaped yet).
inline bool Gone(pid_t pid) {
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string line;
    if (!std::getline(stat, line)) return true;
    const auto close = line.rfind(')');
    return close != std::string::npos && line.compare(close + 2, 1, "Z") == 0;
}

inline bool GoneWithin(pid_t pid, std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!Gone(pid)) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

}  // namespace TeskTest
