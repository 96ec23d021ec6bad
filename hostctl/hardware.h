// Hardware facts of the host: vendor and model, processors, memory.
#pragma once

#include <cstdint>
#include <string>

namespace ZrkCtl::Hardware {

class HardwareInfoImpl {
public:
    // As the firmware reports them, white space included.
    std::string GetVendorName() const;
    std::string GetProductName() const;
};

class CpuInfoImpl {
public:
    std::int32_t GetNumCpuPackages() const;
    std::string GetModelName() const;
};

class MemoryInfoImpl {
public:
    std::uint64_t GetTotalPages() const;
    std::uint64_t GetPageSize() const;
};

}  // namespace ZrkCtl::Hardware
