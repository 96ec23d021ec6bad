#include "linuxhost/system_version.h"

#include <cstdio>
#include <string>

#include "linuxhost/host_files.h"

namespace LinuxHost {
namespace {

void Copy(char (&field)[64], const std::string& text) {
    std::snprintf(field, sizeof field, "%s", text.c_str());
}

}  // namespace

ZSI_SystemVersion ReadSystemVersion() {
    auto release = ReadHostFile("/etc/os-release");
    if (!release) release = ReadHostFile("/usr/lib/os-release");
    const auto values = ParseShellAssignments(release.value_or(""));
    auto value = [&](const char* key) {
        const auto found = values.find(key);
        return found == values.end() ? std::string() : found->second;
    };
    ZSI_SystemVersion v{};
    const std::string name = value("NAME");
    Copy(v.productName, name.empty() ? "Linux" : name);
    Copy(v.productVersion, value("VERSION_ID"));
    Copy(v.kernelVersion, ReadHostLine("/proc/sys/kernel/osrelease"));
    const std::string build = ReadHostLine("/proc/sys/kernel/version");
    if (build.size() > 1 && build[0] == '#')
        Copy(v.buildNumber, build.substr(1, build.find(' ') - 1));
    return v;
}

}  // namespace LinuxHost
