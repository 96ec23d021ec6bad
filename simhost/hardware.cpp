// The simulated host's hardware facts: vendor and model, processors, memory.
#include "simhost/hardware.h"

#include "hostctl/exception.h"
#include "simhost/simhost.h"
#include "simhost/state_values.h"

namespace ZrkCtl::Hardware {

namespace {

using Json = Sim::Json;

// "/hardware", or "/hardware/<section>" (an object; throws when the host
// reports none), with the snapshot that holds it.
class Section {
public:
    // The fault of the operation is looked for in the same snapshot.
    Section(const char* operation, const char* section) : state_(Sim::SnapshotFor(operation)) {
        const Json& all = Sim::Object(*state_, "hardware");
        if (!section) {
            data_ = &all;
            return;
        }
        if (!Sim::Member(all, section))
            throw HostCtl::Lib::HostCtlException(std::string("Hardware information '") + section +
                                                 "' is not available");
        data_ = &Sim::Object(all, section);
    }
    const Json& operator*() const { return *data_; }
    const Json* operator->() const { return data_; }

private:
    std::shared_ptr<const Json> state_;
    const Json* data_ = nullptr;
};

}  // namespace

std::string HardwareInfoImpl::GetVendorName() const {
    return Sim::Text(*Section("hardware.getVendorName", nullptr), "vendor");
}

std::string HardwareInfoImpl::GetProductName() const {
    return Sim::Text(*Section("hardware.getProductName", nullptr), "product");
}

std::int32_t CpuInfoImpl::GetNumCpuPackages() const {
    return Sim::Integer<std::int32_t>(*Section("cpu.getNumCpuPackages", "cpu"), "packages", 1);
}

std::string CpuInfoImpl::GetModelName() const {
    return Sim::Text(*Section("cpu.getModelName", "cpu"), "model");
}

std::uint64_t MemoryInfoImpl::GetTotalPages() const {
    return Sim::Integer<std::uint64_t>(*Section("memory.getTotalPages", "memory"), "totalPages", 0);
}

std::uint64_t MemoryInfoImpl::GetPageSize() const {
    return Sim::Integer<std::uint64_t>(*Section("memory.getPageSize", "memory"), "pageSize", 4096);
}

}  // namespace ZrkCtl::Hardware
