// The host's networking as the console sees it: physical NICs, Zerkel
// (kernel) NICs, standard and distributed switches, port groups, the
// management interface, routing and DNS. Interfaces only; a host backend
// (hostctl/backend.h) hands out the objects.
//
// Every operation reads the host's state when it is called; only the objects
// that say so (ZrkNic, Pnic, DnsConfig) keep a copy, which they mark stale
// when the host changes and reload on Refresh(). Every failure arrives as
// HostCtl::Lib::HostCtlException with a readable text.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hostctl/network_recovery.h"
#include "hostctl/network_types.h"

namespace HostCtl::Network {

// Which switches a listing covers. All (0) is what the console asks for.
enum class PortsetKind : int { All = 0, Standard = 1, Qds = 2 };

// Which physical NICs GetPnics lists. All (1) is what the console asks for.
enum class PnicKind : int { Connected = 0, All = 1, Unused = 2 };

// What a Zerkel NIC is connected to.
enum class ConnectionType : int { None = 0, PortGroup = 1, QdsPort = 2 };

// The PCI device behind a physical NIC.
struct PciDevice {
    std::string address;     // "0000:03:00.0"
    std::string vendorName;  // "Acme Networks"
    std::string deviceName;  // "X540 10 Gigabit Network Connection"
    // The human-readable name: vendor and device joined by a blank (either may
    // be empty).
    std::string GetDescription() const;
};

class PortGroup;

// What the host does for a port group, named by its switch and its name. A
// backend implements it; PortGroup handles call it.
class PortGroupOps {
public:
    virtual ~PortGroupOps() = default;
    virtual std::uint16_t GetVlanId(const PortGroup& group) const = 0;
    virtual void SetVlanId(const PortGroup& group, std::uint16_t vlanId) const = 0;
    virtual std::int64_t GetActiveClients(const PortGroup& group) const = 0;
    virtual NicTeamingPolicy GetTeamingPolicy(const PortGroup& group) const = 0;
    virtual void SetTeamingPolicy(const PortGroup& group, const NicTeamingPolicy& policy) const = 0;
    virtual void AddUplink(const PortGroup& group, const std::string& pnic) const = 0;
    virtual void RemoveUplink(const PortGroup& group, const std::string& pnic) const = 0;
};

// A port group on a standard switch, named by the switch and the group. Each
// call reads or changes the host at once. A handle without a host (made
// without operations) fails every call.
class PortGroup {
public:
    PortGroup(std::string name, std::string switchName, std::shared_ptr<const PortGroupOps> ops)
        : name_(std::move(name)), switchName_(std::move(switchName)), ops_(std::move(ops)) {}

    const std::string& GetName() const { return name_; }
    const std::string& GetVirtualSwitchName() const { return switchName_; }

    // 0 means no VLAN, 4095 all VLANs; a higher id is refused.
    std::uint16_t GetVlanId() const;
    void SetVlanId(std::uint16_t vlanId) const;
    // Zerkel NICs connected to the group, plus the virtual machines on it.
    std::int64_t GetActiveClients() const;

    // The group's own policy, or the switch's when the group has none.
    NicTeamingPolicy GetTeamingPolicy() const;
    // Gives the group a policy of its own.
    void SetTeamingPolicy(const NicTeamingPolicy& policy) const;
    // Makes the physical NIC an active uplink of the group: it is taken away
    // from every other switch (standard or distributed) that has it, made an
    // uplink of this group's switch, and appended to the group's active list.
    // Throws when the host has no such NIC.
    void AddUplink(const std::string& pnic) const;
    // Takes the NIC off the group's policy; when no other group of the switch
    // still lists it, it stops being an uplink of the switch as well. Throws
    // when the group's policy does not list it.
    void RemoveUplink(const std::string& pnic) const;

private:
    const PortGroupOps& Ops() const;
    std::string name_;
    std::string switchName_;
    std::shared_ptr<const PortGroupOps> ops_;
};

// Where a Zerkel NIC is connected, as it was when its NIC object was loaded.
class ConnectionPoint {
public:
    ConnectionPoint() = default;
    // ops serve the port group GetPortGroup() hands out.
    static ConnectionPoint ToPortGroup(std::string portGroup, std::string switchName,
                                       std::shared_ptr<const PortGroupOps> ops);
    static ConnectionPoint ToQdsPort(std::string switchName, std::string portId);

    ConnectionType GetType() const { return type_; }
    // The port group's standard switch, or the distributed switch. Throws
    // "Unsupported connectee type" when the NIC is connected to nothing.
    std::string GetSwitchName() const;
    // The standard-switch port group; throws "Unsupported zSwitch type" for
    // any other connection.
    PortGroup GetPortGroup() const;
    // The distributed-switch port id; throws "Unsupported zSwitch type" for
    // any other connection.
    std::string GetPortId() const;

private:
    ConnectionType type_ = ConnectionType::None;
    std::string switchName_;
    std::string portGroup_;
    std::string portId_;
    std::shared_ptr<const PortGroupOps> ops_;
};

// A physical NIC. Its data is loaded by Refresh(); a new object is stale.
class Pnic {
public:
    virtual ~Pnic() = default;
    virtual const std::string& GetName() const = 0;
    // True before the first Refresh() and whenever the host has changed since.
    virtual bool IsStale() const = 0;
    // Throws when the host has no physical NIC of this name.
    virtual void Refresh() = 0;
    // None when the NIC has no PCI device.
    virtual std::optional<PciDevice> GetPciDevice() = 0;
    virtual MacAddress GetMacAddress() = 0;
    virtual bool IsLinkUp() = 0;
};

// A Zerkel NIC. Its data is loaded by Refresh(); a new object is stale, and
// every change made through it marks it stale again.
class ZrkNic {
public:
    virtual ~ZrkNic() = default;
    virtual const std::string& GetName() const = 0;
    virtual bool IsStale() const = 0;
    // Throws when the host has no Zerkel NIC of this name.
    virtual void Refresh() = 0;

    virtual MacAddress GetMacAddress() = 0;
    // Sets the NIC's MAC address to the physical NIC's.
    virtual void SetMacAddressFromPnic(Pnic& pnic) = 0;
    // The addresses in effect now (with the host's default gateways).
    virtual IpConfig GetIpConfig() = 0;
    // What is configured: the mode flags and the static addresses.
    virtual IpConfig GetConfiguredIpConfig() = 0;
    // Configures the NIC; the addresses in effect follow at once (a DHCP
    // interface asks the DHCP server again). Only static IPv6 addresses that
    // are not link-local are kept as configured. Throws for a static IPv4
    // configuration whose netmask is not one.
    virtual void SetIpConfig(const IpConfig& config) = 0;

    virtual ConnectionPoint GetPortConnection() = 0;
    // Connects the NIC to a standard-switch port group; throws when there is
    // no port group of that name.
    virtual void ConnectToPortGroup(const std::string& portGroup) = 0;

    virtual void Enable() = 0;
    virtual void Disable() = 0;
    // Enabled, connected to a port group or port that exists, and up.
    virtual bool IsUsable() = 0;

    // Interface down and up again; up re-reads the configuration (and so asks
    // the DHCP server again).
    virtual void InterfaceDown() = 0;
    virtual void InterfaceUp() = 0;

    // Asks the DHCP server to renew the IPv4 lease; without an answer the
    // current lease is kept. Throws when the NIC is not configured for DHCP.
    virtual void RenewDhcp() = 0;
    // The same for the DHCPv6 addresses (throws without DHCPv6).
    virtual void RenewDhcpv6() = 0;
    // Asks for a new lease; with release the current lease is dropped first,
    // so without an answer the NIC is left at 0.0.0.0.
    virtual void RequestRenewal(bool release) = 0;

    // Connects the NIC to a port of a distributed switch; throws when the
    // switch or the port does not exist.
    virtual void ConnectToQdsPort(const std::string& switchName, const std::string& portId) = 0;
};

// A standard switch, by name. Each call reads or changes the host at once.
class Portset {
public:
    // A standard switch's default size.
    static constexpr std::int64_t DEF_NUM_PORTS = 128;

    virtual ~Portset() = default;
    virtual const std::string& GetName() const = 0;

    // True when a standard or distributed switch of this name exists.
    virtual bool IsValidVirtualSwitch() const = 0;

    virtual std::vector<std::string> GetUplinks() const = 0;
    virtual std::vector<std::string> GetPortGroups() const = 0;
    virtual std::int64_t GetNumPorts() const = 0;
    // Uplinks plus the active clients of every port group.
    virtual std::int64_t GetUsedPorts() const = 0;
    virtual std::int64_t GetConfiguredPorts() const = 0;

    virtual NicTeamingPolicy GetTeamingPolicy() const = 0;
    // Throws when the policy names a NIC that is not an uplink of the switch.
    virtual void SetTeamingPolicy(const NicTeamingPolicy& policy) const = 0;
    // Makes the physical NIC an uplink. Throws when the NIC does not exist or
    // another switch has it.
    virtual void AddUplink(const std::string& pnic) const = 0;
    // Drops the uplink from the switch, its policy and its port groups'
    // policies; does nothing when the switch does not have it.
    virtual void RemoveUplink(const std::string& pnic) const = 0;
    // Adds a port group (VLAN 0, the switch's teaming policy). Throws when the
    // name is empty or a port group of that name exists anywhere on the host,
    // or the VLAN id is above 4095.
    virtual PortGroup AddPortGroup(const std::string& name, std::uint16_t vlanId = 0) const = 0;
};

// A port group by name alone.
class NamedPortGroup {
public:
    virtual ~NamedPortGroup() = default;
    // True when a port group of this name exists on any standard switch.
    virtual bool IsValidPortGroup() const = 0;
};

// A distributed switch, by name.
class QdsSwitch {
public:
    virtual ~QdsSwitch() = default;
    virtual const std::string& GetName() const = 0;
    // Physical NIC name to the switch's uplink port name.
    virtual std::map<std::string, std::string> GetUplinkMap() const = 0;
    // Drops the physical NIC from the uplink map; nothing when absent.
    virtual void RemoveUplink(const std::string& pnic) const = 0;

    // Whether the switch is of the host's own kind, whose ports the host may
    // make and change itself (a foreign one is managed by its maker only).
    virtual bool IsOwnKind() const = 0;
    // The settings of one port; throws when the switch has no such port.
    virtual QdsPortSettings GetPortSettings(const std::string& portId) const = 0;
    // Makes a host-local port ("hlp-" and the next free number) with the
    // settings and answers its id. Throws on a foreign switch or a full one,
    // when an uplink is not one of the switch's, or for a VLAN id above 4094.
    virtual std::string AddHostLocalPort(const QdsPortSettings& settings) const = 0;
};

class VirtualSwitchInfo {
public:
    virtual ~VirtualSwitchInfo() = default;
    // The standard switches in the host's order (none for PortsetKind::Qds).
    virtual std::vector<std::unique_ptr<Portset>> GetVirtualSwitches(
        PortsetKind kind = PortsetKind::All) const = 0;
    virtual std::vector<std::unique_ptr<QdsSwitch>> GetQdsSwitches() const = 0;
    // Creates an empty standard switch. Throws when the name is empty, longer
    // than 31 characters, taken by another switch, or numPorts is not 1..4096.
    virtual std::unique_ptr<Portset> AddVirtualSwitch(
        const std::string& name, std::int64_t numPorts = Portset::DEF_NUM_PORTS) const = 0;
};

class ZerkelNicInfo {
public:
    virtual ~ZerkelNicInfo() = default;
    // The Zerkel NICs in the host's order; Standard and Qds keep the NICs
    // connected to that kind of switch.
    virtual std::vector<std::unique_ptr<ZrkNic>> GetZerkelNics(
        PortsetKind kind = PortsetKind::All) const = 0;
};

class NetworkInfo {
public:
    virtual ~NetworkInfo() = default;
    // Whether the kernel runs with IPv6 now.
    virtual bool IsZrkIpv6Enabled() const = 0;
    // Whether it shall after the next reboot (now stays as it is).
    virtual void SetZrkIpv6Enabled(bool enabled) const = 0;

    virtual std::vector<std::unique_ptr<Pnic>> GetPnics(PnicKind kind = PnicKind::All) const = 0;
    virtual std::vector<PortGroup> GetAllPortGroups(PortsetKind kind = PortsetKind::All) const = 0;

    // Finds the management interface again (the host names it; a name that no
    // Zerkel NIC has means none).
    virtual void UpdateManagementInterface() = 0;
    // What the last update found (it updates first if it never ran); null when
    // the host has no management interface.
    virtual std::unique_ptr<ZrkNic> GetManagementInterface() = 0;

    // Removes every switch, port group and Zerkel NIC, the default gateways,
    // the name servers and search domains, and the host name.
    virtual void ClearNetworkConfig() const = 0;
    // Sets the network up with the host's defaults: switch "zSwitch0" with the
    // first physical NIC that has a link (else the first one) as uplink, port
    // groups "Management Network" and "VM Network", Zerkel NIC "zrk0" on the
    // management port group using DHCP, IPv6 with router advertisements.
    // Throws when the network is not cleared or the host has no physical NIC.
    virtual void AutoConfigNetwork() const = 0;
    // Switches the network dump target off.
    virtual void DisableNetDumper() const = 0;
};

// Default gateways of a network stack ("defaultNetStack").
class RoutingInfo {
public:
    virtual ~RoutingInfo() = default;
    virtual Ipv4Address GetZerkelDefaultGateway() const = 0;
    // With checkReachable the gateway must lie in the management interface's
    // IPv4 subnet (throws otherwise).
    virtual void SetZerkelDefaultGateway(const Ipv4Address& gateway,
                                         bool checkReachable = false) const = 0;
    virtual Ipv6Address GetIpv6ZerkelDefaultGateway() const = 0;
    virtual void SetIpv6ZerkelDefaultGateway(const Ipv6Address& gateway) const = 0;
};

// DNS settings of a network stack. Reads come from the object's copy, which
// Refresh() loads; changes reach the running host at once and mark the copy
// stale. SaveConfig() makes the running settings the saved ones (those that
// survive a reboot).
class DnsConfig {
public:
    virtual ~DnsConfig() = default;
    virtual bool IsStale() const = 0;
    virtual void Refresh() = 0;

    virtual std::string GetHostname() = 0;
    virtual std::string GetDomain() = 0;
    virtual std::vector<Ipv4Address> GetNameServers() = 0;
    // With includeLinkLocal false, link-local servers are left out.
    virtual std::vector<Ipv6Address> GetIpv6NameServers(bool includeLinkLocal) = 0;
    virtual std::vector<std::string> GetSearchDomains() = 0;

    // A host name without dots (throws for anything else). With save the
    // change is saved at once.
    virtual void SetHostname(const std::string& hostname, bool save) = 0;
    // "host.example.com": host name "host" and domain "example.com", or
    // domain when it is not empty. Throws for a name or domain that is not
    // one.
    virtual void SetFqdn(const std::string& fqdn, bool save, const std::string& domain) = 0;
    // Both IPv4 and IPv6 name servers.
    virtual void RemoveNameServers() = 0;
    virtual void AddUserNameServer(const IpAddress& server) = 0;
    // Replaces the search domains by the names in text (separated by blanks
    // or commas).
    virtual void SetSearchDomainsString(const std::string& text) = 0;
    // Appends unless present; throws for the empty name.
    virtual void AddUserSearchDomain(const std::string& domain) = 0;
    virtual void SaveConfig() = 0;
};

}  // namespace HostCtl::Network
