// The program's one host backend.
#include "hostctl/backend.h"

#include "hostctl/exception.h"

namespace HostCtl {
namespace {

std::unique_ptr<Backend>& Slot() {
    static std::unique_ptr<Backend> backend;
    return backend;
}

}  // namespace

std::string Backend::WhyNotOffered(Feature) const {
    return {};
}

std::unique_ptr<HostWatch> Backend::WatchHost() const {
    return nullptr;
}

Backend& TheBackend() {
    auto& backend = Slot();
    if (!backend) throw Lib::HostCtlException("No host backend");
    return *backend;
}

void SetBackend(std::unique_ptr<Backend> backend) {
    Slot() = std::move(backend);
}

}  // namespace HostCtl
