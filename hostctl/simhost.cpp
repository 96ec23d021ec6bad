#include "hostctl/simhost.h"

#include "hostctl/exception.h"

namespace ZrkCtl::Sim {

Json Load() {
    try {
        return ::Sim::Load();
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
