// The networking value types: PCI descriptions, port-group handles and
// connection points.
#include "hostctl/network.h"

#include "hostctl/exception.h"

namespace HostCtl::Network {

using Lib::HostCtlException;

std::string PciDevice::GetDescription() const {
    if (vendorName.empty()) return deviceName;
    if (deviceName.empty()) return vendorName;
    return vendorName + " " + deviceName;
}

// --- PortGroup -----------------------------------------------------------

const PortGroupOps& PortGroup::Ops() const {
    if (!ops_) throw HostCtlException("Port group " + name_ + " has no host");
    return *ops_;
}

std::uint16_t PortGroup::GetVlanId() const {
    return Ops().GetVlanId(*this);
}

void PortGroup::SetVlanId(std::uint16_t vlanId) const {
    Ops().SetVlanId(*this, vlanId);
}

std::int64_t PortGroup::GetActiveClients() const {
    return Ops().GetActiveClients(*this);
}

NicTeamingPolicy PortGroup::GetTeamingPolicy() const {
    return Ops().GetTeamingPolicy(*this);
}

void PortGroup::SetTeamingPolicy(const NicTeamingPolicy& policy) const {
    Ops().SetTeamingPolicy(*this, policy);
}

void PortGroup::AddUplink(const std::string& pnic) const {
    Ops().AddUplink(*this, pnic);
}

void PortGroup::RemoveUplink(const std::string& pnic) const {
    Ops().RemoveUplink(*this, pnic);
}

// --- ConnectionPoint -----------------------------------------------------

ConnectionPoint ConnectionPoint::ToPortGroup(std::string portGroup, std::string switchName,
                                             std::shared_ptr<const PortGroupOps> ops) {
    ConnectionPoint c;
    c.type_ = ConnectionType::PortGroup;
    c.portGroup_ = std::move(portGroup);
    c.switchName_ = std::move(switchName);
    c.ops_ = std::move(ops);
    return c;
}

ConnectionPoint ConnectionPoint::ToQdsPort(std::string switchName, std::string portId) {
    ConnectionPoint c;
    c.type_ = ConnectionType::QdsPort;
    c.switchName_ = std::move(switchName);
    c.portId_ = std::move(portId);
    return c;
}

std::string ConnectionPoint::GetSwitchName() const {
    if (type_ == ConnectionType::None) throw HostCtlException("Unsupported connectee type");
    return switchName_;
}

PortGroup ConnectionPoint::GetPortGroup() const {
    if (type_ != ConnectionType::PortGroup) throw HostCtlException("Unsupported zSwitch type");
    return PortGroup(portGroup_, switchName_, ops_);
}

std::string ConnectionPoint::GetPortId() const {
    if (type_ != ConnectionType::QdsPort) throw HostCtlException("Unsupported zSwitch type");
    return portId_;
}

}  // namespace HostCtl::Network
