// Firewall-ruleset handles and the calls that go to the current backend.
#include "hostctl/system.h"

#include "hostctl/backend.h"
#include "hostctl/exception.h"

namespace HostCtl::System {

const FirewallRulesetOps& FirewallRuleset::Ops() const {
    if (!ops_) throw Lib::HostCtlException("Firewall ruleset " + id_ + " has no host");
    return *ops_;
}

bool FirewallRuleset::IsServiceControlled() const {
    return Ops().IsServiceControlled(id_);
}

void FirewallRuleset::SetEnabled(bool enabled) const {
    Ops().SetEnabled(id_, enabled);
}

void FirewallRuleset::Apply() const {
    Ops().Apply(id_);
}

}  // namespace HostCtl::System

