#include "linuxhost/nic_facts.h"

#include <sys/stat.h>
#include <unistd.h>

#include <climits>

#include "platform/hostroot.h"
#include "platform/regular_file.h"

namespace LinuxHost {
namespace {

std::string SysfsNet(const std::string& name) {
    const std::string rooted = Tesk::Platform::HostPath("/sys/class/net");
    struct stat st {};
    const std::string base = ::stat(rooted.c_str(), &st) == 0 ? rooted : "/sys/class/net";
    return base + "/" + name;
}

std::string FirstLine(const std::string& path) {
    const auto text = Tesk::Platform::ReadRegularFile(path, nullptr, 4096);
    if (!text) return {};
    return text->substr(0, text->find('\n'));
}

// The last part of where the link points; empty when it is none.
std::string LinkTarget(const std::string& path) {
    char buffer[PATH_MAX];
    const ssize_t n = ::readlink(path.c_str(), buffer, sizeof buffer - 1);
    if (n <= 0) return {};
    const std::string target(buffer, static_cast<std::size_t>(n));
    return target.substr(target.rfind('/') + 1);
}

}  // namespace

bool IsPhysicalNic(const LinkFact& link) {
    if (!link.ether) return false;
    if (link.kind == "veth") return true;
    if (!link.kind.empty()) return false;
    struct stat st {};
    return ::stat((SysfsNet(link.name) + "/device").c_str(), &st) == 0;
}

NicHardware ReadNicHardware(const std::string& name) {
    const std::string dir = SysfsNet(name);
    NicHardware hw;
    hw.driver = LinkTarget(dir + "/device/driver");
    if (LinkTarget(dir + "/device/subsystem") == "pci") hw.pciAddress = LinkTarget(dir + "/device");
    const std::string speed = FirstLine(dir + "/speed");
    try {
        const int mbps = speed.empty() ? -1 : std::stoi(speed);
        if (mbps > 0) hw.speedMbps = mbps;
    } catch (const std::exception&) {
    }
    hw.duplex = FirstLine(dir + "/duplex");
    if (hw.duplex != "full" && hw.duplex != "half") hw.duplex.clear();
    return hw;
}

}  // namespace LinuxHost
