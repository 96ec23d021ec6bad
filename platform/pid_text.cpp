#include "platform/pid_text.h"

#include <cstdio>

namespace Tesk::Platform {

std::optional<pid_t> ParsePidText(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(" \t\n");
    if (begin == std::string::npos) return std::nullopt;
    const std::size_t end = text.find_last_not_of(" \t\n");
    const std::string digits = text.substr(begin, end - begin + 1);
    if (digits.size() > 10 || digits.find_first_not_of("0123456789") != std::string::npos)
        return std::nullopt;
    const unsigned long long value = std::stoull(digits);
    unsigned long long pidMax = 4194304;  // the kernel's own upper bound
    if (FILE* in = std::fopen("/proc/sys/kernel/pid_max", "r")) {
        unsigned long long read = 0;
        if (std::fscanf(in, "%llu", &read) == 1 && read > 0) pidMax = read;
        std::fclose(in);
    }
    if (value < 1 || value > pidMax) return std::nullopt;
    return static_cast<pid_t>(value);
}

}  // namespace Tesk::Platform
