// What the lab tests of the running parts read: the lab's environment and
// whole files (call files, logs, what the backend wrote).
#pragma once

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace LinuxRunTest {

// The variable's value; empty when it is not set (outside a lab).
inline std::string Env(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// The file's text; empty when it cannot be read.
inline std::string ReadFile(const std::string& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

}  // namespace LinuxRunTest
