// The store's failures turned into the host-control exception.
#include "simhost/simhost.h"

#include "hostctl/exception.h"
#include "simhost/state_values.h"

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

namespace {

// Throws the fault "/faults/<name>" of the state when it is set.
void ThrowFault(const Json& state, const std::string& name) {
    const Json* fault = Member(Object(state, "faults"), name);
    if (!fault) return;
    std::string text = fault->is_object() ? Text(*fault, "exception") : std::string();
    if (text.empty()) text = "Operation " + name + " failed";
    throw HostCtl::Lib::HostCtlException(text);
}

}  // namespace

std::shared_ptr<const Json> SnapshotFor(const std::string& name) {
    auto state = Snapshot();
    ThrowFault(*state, name);
    return state;
}

void CheckFault(const std::string& name) {
    std::shared_ptr<const Json> state;
    try {
        state = ::Sim::Snapshot();
    } catch (const std::exception&) {
        return;  // no state, no fault: the operation fails on its own
    }
    ThrowFault(*state, name);
}

}  // namespace ZrkCtl::Sim
