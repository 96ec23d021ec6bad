// Hardware facts of the host: vendor and model, processors, memory.
// Interfaces only; a host backend (hostctl/backend.h) hands out the objects.
#pragma once

#include <cstdint>
#include <string>

namespace HostCtl::Hardware {

class HardwareInfo {
public:
    virtual ~HardwareInfo() = default;
    // As the firmware reports them, white space included.
    virtual std::string GetVendorName() const = 0;
    virtual std::string GetProductName() const = 0;
};

class CpuInfo {
public:
    virtual ~CpuInfo() = default;
    virtual std::int32_t GetNumCpuPackages() const = 0;
    virtual std::string GetModelName() const = 0;
};

class MemoryInfo {
public:
    virtual ~MemoryInfo() = default;
    virtual std::uint64_t GetTotalPages() const = 0;
    virtual std::uint64_t GetPageSize() const = 0;
};

}  // namespace HostCtl::Hardware
