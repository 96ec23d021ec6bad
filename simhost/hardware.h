// The simulated host's hardware facts ("/hardware") and smart cards
// ("/smartCards").
#pragma once

#include "hostctl/hardware.h"
#include "hostctl/smartcard.h"

namespace ZrkCtl::Hardware {

class HardwareInfoImpl : public HostCtl::Hardware::HardwareInfo {
public:
    std::string GetVendorName() const override;
    std::string GetProductName() const override;
};

class CpuInfoImpl : public HostCtl::Hardware::CpuInfo {
public:
    std::int32_t GetNumCpuPackages() const override;
    std::string GetModelName() const override;
};

class MemoryInfoImpl : public HostCtl::Hardware::MemoryInfo {
public:
    std::uint64_t GetTotalPages() const override;
    std::uint64_t GetPageSize() const override;
};

class SmartCardInfoImpl : public HostCtl::Hardware::SmartCardInfo {
public:
    std::vector<HostCtl::Hardware::SmartCardSlot> GetAllSlots() const override;
    HostCtl::Hardware::SmartCardToken GetToken(
        const HostCtl::Hardware::SmartCardSlot& slot) const override;
};

}  // namespace ZrkCtl::Hardware
