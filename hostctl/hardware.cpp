#include "hostctl/hardware.h"

#include "hostctl/exception.h"
#include "hostctl/simhost.h"

namespace ZrkCtl::Hardware {

namespace {

// "/hardware/<section>", an object; throws when the host reports none.
Sim::Json Section(const char* section) {
    Sim::Json state = Sim::Load();
    const Sim::Json& hardware = state.value("hardware", Sim::Json::object());
    if (!section) return hardware;
    if (!hardware.contains(section) || !hardware[section].is_object())
        throw HostCtl::Lib::HostCtlException(std::string("Hardware information '") + section +
                                             "' is not available");
    return hardware[section];
}

}  // namespace

std::string HardwareInfoImpl::GetVendorName() const {
    Sim::CheckFault("hardware.getVendorName");
    return Section(nullptr).value("vendor", "");
}

std::string HardwareInfoImpl::GetProductName() const {
    Sim::CheckFault("hardware.getProductName");
    return Section(nullptr).value("product", "");
}

std::int32_t CpuInfoImpl::GetNumCpuPackages() const {
    Sim::CheckFault("cpu.getNumCpuPackages");
    return Section("cpu").value("packages", 1);
}

std::string CpuInfoImpl::GetModelName() const {
    Sim::CheckFault("cpu.getModelName");
    return Section("cpu").value("model", "");
}

std::uint64_t MemoryInfoImpl::GetTotalPages() const {
    Sim::CheckFault("memory.getTotalPages");
    return Section("memory").value("totalPages", std::uint64_t{0});
}

std::uint64_t MemoryInfoImpl::GetPageSize() const {
    Sim::CheckFault("memory.getPageSize");
    return Section("memory").value("pageSize", std::uint64_t{4096});
}

}  // namespace ZrkCtl::Hardware
