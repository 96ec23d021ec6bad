// What the Linux host is made of: vendor and model from the firmware's DMI
// tables (/sys/class/dmi/id), processors from /proc/cpuinfo, memory from
// /proc/meminfo, all under the host root.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "hostctl/hardware.h"

namespace LinuxHost {

class HardwareInfoImpl : public HostCtl::Hardware::HardwareInfo {
public:
    // The DMI system vendor; empty when the firmware has no DMI tables.
    std::string GetVendorName() const override;
    // The DMI product name; without DMI the device tree's model, else
    // kUnidentifiedMachine, so the welcome screen never shows an empty line.
    std::string GetProductName() const override;
};

inline constexpr const char kUnidentifiedMachine[] = "Unidentified machine";

class CpuInfoImpl : public HostCtl::Hardware::CpuInfo {
public:
    // Throw when /proc/cpuinfo cannot be read or lists no processor.
    std::int32_t GetNumCpuPackages() const override;
    std::string GetModelName() const override;
};

class MemoryInfoImpl : public HostCtl::Hardware::MemoryInfo {
public:
    // MemTotal of /proc/meminfo in pages of GetPageSize(); throws when it
    // cannot be read.
    std::uint64_t GetTotalPages() const override;
    std::uint64_t GetPageSize() const override;
};

// What /proc/cpuinfo says: distinct physical packages (1 when the kernel
// names none) and the first processor's model; packages 0 when it lists no
// processor.
struct CpuSummary {
    std::int32_t packages = 0;
    std::string model;
};
CpuSummary SummariseCpuInfo(std::string_view cpuinfo);

}  // namespace LinuxHost
