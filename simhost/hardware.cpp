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
    explicit Section(const char* section = nullptr) : state_(Sim::Snapshot()) {
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
    Sim::CheckFault("hardware.getVendorName");
    return Section()->value("vendor", "");
}

std::string HardwareInfoImpl::GetProductName() const {
    Sim::CheckFault("hardware.getProductName");
    return Section()->value("product", "");
}

std::int32_t CpuInfoImpl::GetNumCpuPackages() const {
    Sim::CheckFault("cpu.getNumCpuPackages");
    return Section("cpu")->value("packages", 1);
}

std::string CpuInfoImpl::GetModelName() const {
    Sim::CheckFault("cpu.getModelName");
    return Section("cpu")->value("model", "");
}

std::uint64_t MemoryInfoImpl::GetTotalPages() const {
    Sim::CheckFault("memory.getTotalPages");
    return Section("memory")->value("totalPages", std::uint64_t{0});
}

std::uint64_t MemoryInfoImpl::GetPageSize() const {
    Sim::CheckFault("memory.getPageSize");
    return Section("memory")->value("pageSize", std::uint64_t{4096});
}

}  // namespace ZrkCtl::Hardware
