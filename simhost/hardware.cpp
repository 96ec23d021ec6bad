// The simulated host's hardware facts: vendor and model, processors, memory.
#include "simhost/hardware.h"

#include "hostctl/exception.h"
#include "simhost/simhost.h"

namespace ZrkCtl::Hardware {

namespace {

using Json = Sim::Json;

const Json& EmptyObject() {
    static const Json empty = Json::object();
    return empty;
}

// "/hardware", or "/hardware/<section>" (an object; throws when the host
// reports none), with the snapshot that holds it.
class Section {
public:
    // The fault of the operation is looked for in the same snapshot.
    Section(const char* operation, const char* section) : state_(Sim::SnapshotFor(operation)) {
        auto hardware = state_->find("hardware");
        const Json& all =
            hardware != state_->end() && hardware->is_object() ? *hardware : EmptyObject();
        if (!section) {
            data_ = &all;
            return;
        }
        auto it = all.find(section);
        if (it == all.end() || !it->is_object())
            throw HostCtl::Lib::HostCtlException(std::string("Hardware information '") + section +
                                                 "' is not available");
        data_ = &*it;
    }
    const Json& operator*() const { return *data_; }
    const Json* operator->() const { return data_; }

private:
    std::shared_ptr<const Json> state_;
    const Json* data_ = nullptr;
};

}  // namespace

std::string HardwareInfoImpl::GetVendorName() const {
    return Section("hardware.getVendorName", nullptr)->value("vendor", "");
}

std::string HardwareInfoImpl::GetProductName() const {
    return Section("hardware.getProductName", nullptr)->value("product", "");
}

std::int32_t CpuInfoImpl::GetNumCpuPackages() const {
    return Section("cpu.getNumCpuPackages", "cpu")->value("packages", 1);
}

std::string CpuInfoImpl::GetModelName() const {
    return Section("cpu.getModelName", "cpu")->value("model", "");
}

std::uint64_t MemoryInfoImpl::GetTotalPages() const {
    return Section("memory.getTotalPages", "memory")->value("totalPages", std::uint64_t{0});
}

std::uint64_t MemoryInfoImpl::GetPageSize() const {
    return Section("memory.getPageSize", "memory")->value("pageSize", std::uint64_t{4096});
}

}  // namespace ZrkCtl::Hardware
