// The store's failures turned into the host-control exception.
#include "simhost/simhost.h"

#include "hostctl/exception.h"

namespace ZrkCtl::Sim {

std::shared_ptr<const Json> Snapshot() {
    try {
        return ::Sim::Snapshot();
    } catch (const std::exception& e) {
        throw HostCtl::Lib::HostCtlException(e.what());
    }
}

void Update(const std::function<void(Json&)>& change) {
    try {
        ::Sim::Update(change);
    } catch (const HostCtl::Lib::HostCtlException&) {
        throw;
    } catch (const std::exception& e) {
        throw HostCtl::Lib::HostCtlException(e.what());
    }
}

void CheckFault(const std::string& name) {
    auto fault = ::Sim::Fault(name);
    if (!fault) return;
    std::string text =
        fault->is_object() ? fault->value("exception", std::string()) : std::string();
    if (text.empty()) text = "Operation " + name + " failed";
    throw HostCtl::Lib::HostCtlException(text);
}

}  // namespace ZrkCtl::Sim
