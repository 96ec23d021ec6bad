// The host's networking: physical NICs, Zerkel (kernel) NICs, standard and
// distributed switches, port groups, the management interface, routing, DNS
// and the hosts file.
//
// Every operation reads the host's state when it is called; only the objects
// that say so (ZrkNic, Pnic, DnsConfigImpl) keep a copy, which they mark stale
// when the host changes and reload on Refresh(). Every failure arrives as
// HostCtl::Lib::HostCtlException with a readable text.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hostctl/network_types.h"
#include "hostctl/simhost.h"

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

// A port group on a standard switch, named by the switch and the group. Each
// call reads or changes the host at once.
class PortGroup {
public:
    PortGroup(std::string name, std::string switchName)
        : name_(std::move(name)), switchName_(std::move(switchName)) {}
    virtual ~PortGroup() = default;

    const std::string& GetName() const { return name_; }
    const std::string& GetVirtualSwitchName() const { return switchName_; }

    // 0 means no VLAN, 4095 all VLANs.
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
    void AddUplink(const std::string& pnic) const;
    // Takes the NIC off the group's policy; when no other group of the switch
    // still lists it, it stops being an uplink of the switch as well.
    void RemoveUplink(const std::string& pnic) const;

private:
    std::string name_;
    std::string switchName_;
};

// Where a Zerkel NIC is connected, as it was when its NIC object was loaded.
class ConnectionPoint {
public:
    ConnectionPoint() = default;
    static ConnectionPoint ToPortGroup(std::string portGroup, std::string switchName);
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
};

// A physical NIC. Its data is loaded by Refresh(); a new object is stale.
class Pnic {
public:
    virtual ~Pnic() = default;
    virtual const std::string& GetName() const = 0;
    // True before the first Refresh() and whenever the host has changed since.
    virtual bool IsStale() const = 0;
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
    virtual void Refresh() = 0;

    virtual MacAddress GetMacAddress() = 0;
    // Sets the NIC's MAC address to the physical NIC's.
    virtual void SetMacAddressFromPnic(Pnic& pnic) = 0;
    // The addresses in effect now (with the host's default gateways).
    virtual IpConfig GetIpConfig() = 0;
    // What is configured: the mode flags and the static addresses.
    virtual IpConfig GetConfiguredIpConfig() = 0;
    // Configures the NIC; the addresses in effect follow at once (a DHCP
    // interface asks the DHCP server again).
    virtual void SetIpConfig(const IpConfig& config) = 0;

    virtual ConnectionPoint GetPortConnection() = 0;
    // Connects the NIC to a standard-switch port group.
    virtual void ConnectToPortGroup(const std::string& portGroup) = 0;

    virtual bool IsEnabled() = 0;
    virtual void Enable() = 0;
    virtual void Disable() = 0;
    // Enabled, connected to a port group or port that exists, and up.
    virtual bool IsUsable() = 0;

    // Interface down and up again; up re-reads the configuration (and so asks
    // the DHCP server again).
    virtual void InterfaceDown() = 0;
    virtual void InterfaceUp() = 0;

    // Asks the DHCP server to renew the IPv4 lease; without an answer the
    // current lease is kept.
    virtual void RenewDhcp() = 0;
    // The same for the DHCPv6 addresses.
    virtual void RenewDhcpv6() = 0;
    // Asks for a new lease; with release the current lease is dropped first,
    // so without an answer the NIC is left at 0.0.0.0.
    virtual void RequestRenewal(bool release) = 0;
};

// A standard switch's default size.
struct Portset {
    static constexpr std::int64_t DEF_NUM_PORTS = 128;
};

}  // namespace HostCtl::Network

namespace ZrkCtl::Network {

namespace HN = HostCtl::Network;

class PnicImpl : public HN::Pnic {
public:
    explicit PnicImpl(std::string name) : name_(std::move(name)) {}
    const std::string& GetName() const override { return name_; }
    bool IsStale() const override;
    // Throws when the host has no physical NIC of this name.
    void Refresh() override;
    std::optional<HN::PciDevice> GetPciDevice() override;
    HN::MacAddress GetMacAddress() override;
    bool IsLinkUp() override;

private:
    const Sim::Json& Data();
    std::string name_;
    std::optional<Sim::Json> data_;
};

class ZrkNicImpl : public HN::ZrkNic {
public:
    explicit ZrkNicImpl(std::string name) : name_(std::move(name)) {}
    const std::string& GetName() const override { return name_; }
    bool IsStale() const override;
    // Throws when the host has no Zerkel NIC of this name.
    void Refresh() override;

    HN::MacAddress GetMacAddress() override;
    void SetMacAddressFromPnic(HN::Pnic& pnic) override;
    HN::IpConfig GetIpConfig() override;
    HN::IpConfig GetConfiguredIpConfig() override;
    void SetIpConfig(const HN::IpConfig& config) override;
    HN::ConnectionPoint GetPortConnection() override;
    void ConnectToPortGroup(const std::string& portGroup) override;
    bool IsEnabled() override;
    void Enable() override;
    void Disable() override;
    bool IsUsable() override;
    void InterfaceDown() override;
    void InterfaceUp() override;
    void RenewDhcp() override;
    void RenewDhcpv6() override;
    void RequestRenewal(bool release) override;

private:
    const Sim::Json& Data();
    // Runs change on this NIC's entry under the state lock, then marks the
    // object stale.
    void Change(const std::string& fault,
                const std::function<void(Sim::Json& nic, Sim::Json& net)>& change);
    std::string name_;
    std::optional<Sim::Json> data_;  // what Refresh() loaded
    bool changed_ = false;           // changed through this object since
};

// A standard switch, by name. Each call reads or changes the host at once.
class PortsetImpl : public HN::Portset {
public:
    explicit PortsetImpl(std::string name) : name_(std::move(name)) {}
    const std::string& GetName() const { return name_; }

    // True when a standard or distributed switch of this name exists.
    bool IsValidVirtualSwitch() const;

    std::vector<std::string> GetUplinks() const;
    std::vector<std::string> GetPortGroups() const;
    std::int64_t GetNumPorts() const;
    // Uplinks plus the active clients of every port group.
    std::int64_t GetUsedPorts() const;
    std::int64_t GetConfiguredPorts() const;

    HN::NicTeamingPolicy GetTeamingPolicy() const;
    void SetTeamingPolicy(const HN::NicTeamingPolicy& policy) const;
    // Makes the physical NIC an uplink. Throws when the NIC does not exist or
    // another switch has it.
    void AddUplink(const std::string& pnic) const;
    // Drops the uplink from the switch, its policy and its port groups'
    // policies; does nothing when the switch does not have it.
    void RemoveUplink(const std::string& pnic) const;
    // Adds a port group (VLAN 0, the switch's teaming policy). Throws when a
    // port group of that name exists anywhere on the host.
    HN::PortGroup AddPortGroup(const std::string& name, std::uint16_t vlanId = 0) const;

private:
    std::string name_;
};

// A port group by name alone.
class PortGroupImpl {
public:
    explicit PortGroupImpl(std::string name) : name_(std::move(name)) {}
    // True when a port group of this name exists on any standard switch.
    bool IsValidPortGroup() const;
    // The port group; throws when there is none of this name.
    HN::PortGroup Get() const;

private:
    std::string name_;
};

// A distributed switch, by name.
class QdsSwitchImpl {
public:
    explicit QdsSwitchImpl(std::string name) : name_(std::move(name)) {}
    const std::string& GetName() const { return name_; }
    // Physical NIC name to the switch's uplink port name.
    std::map<std::string, std::string> GetUplinkMap() const;
    std::vector<std::string> GetPortIds() const;
    std::int64_t GetNumPorts() const;
    // Drops the physical NIC from the uplink map; nothing when absent.
    void RemoveUplink(const std::string& pnic) const;

private:
    std::string name_;
};

class VirtualSwitchInfoImpl {
public:
    // The standard switches in the host's order (none for PortsetKind::Qds).
    std::vector<PortsetImpl> GetVirtualSwitches(HN::PortsetKind kind = HN::PortsetKind::All) const;
    std::vector<QdsSwitchImpl> GetQdsSwitches() const;
    // Creates an empty standard switch. Throws when the name is empty, longer
    // than 31 characters, taken by another switch, or numPorts is not 1..4096.
    PortsetImpl AddVirtualSwitch(const std::string& name,
                                 std::int64_t numPorts = HN::Portset::DEF_NUM_PORTS) const;
};

class ZerkelNicInfoImpl {
public:
    // The Zerkel NICs in the host's order; Standard and Qds keep the NICs
    // connected to that kind of switch.
    std::vector<std::unique_ptr<HN::ZrkNic>> GetZerkelNics(
        HN::PortsetKind kind = HN::PortsetKind::All) const;
};

class NetworkInfoImpl {
public:
    // Whether the kernel runs with IPv6 now.
    bool IsZrkIpv6Enabled() const;
    // Whether it shall after the next reboot.
    void SetZrkIpv6Enabled(bool enabled) const;
    bool GetZrkIpv6EnabledAfterReboot() const;

    std::vector<std::unique_ptr<HN::Pnic>> GetPnics(HN::PnicKind kind = HN::PnicKind::All) const;
    std::vector<HN::PortGroup> GetAllPortGroups(HN::PortsetKind kind = HN::PortsetKind::All) const;

    // Finds the management interface again (the host names it; a name that no
    // Zerkel NIC has means none).
    void UpdateManagementInterface();
    // What the last update found (it updates first if it never ran); null when
    // the host has no management interface.
    std::unique_ptr<HN::ZrkNic> GetManagementInterface();

    // Removes every switch, port group and Zerkel NIC, the default gateways,
    // the name servers and search domains, and the host name.
    void ClearNetworkConfig() const;
    // Sets the network up with the host's defaults: switch "zSwitch0" with the
    // first physical NIC that has a link (else the first one) as uplink, port
    // groups "Management Network" and "VM Network", Zerkel NIC "zrk0" on the
    // management port group using DHCP, IPv6 with router advertisements.
    void AutoConfigNetwork() const;
    // Switches the network dump target off.
    void DisableNetDumper() const;
    bool IsNetDumperEnabled() const;

private:
    std::optional<std::string> management_;
    bool updated_ = false;
};

// Default gateways of a network stack ("defaultNetStack").
class RoutingInfoImpl {
public:
    explicit RoutingInfoImpl(std::string netStack = "defaultNetStack");
    HN::Ipv4Address GetZerkelDefaultGateway() const;
    // With checkReachable the gateway must lie in the management interface's
    // IPv4 subnet.
    void SetZerkelDefaultGateway(const HN::Ipv4Address& gateway, bool checkReachable = false) const;
    HN::Ipv6Address GetIpv6ZerkelDefaultGateway() const;
    void SetIpv6ZerkelDefaultGateway(const HN::Ipv6Address& gateway) const;

private:
    std::string netStack_;
};

// DNS settings of a network stack. Reads come from the object's copy, which
// Refresh() loads; changes reach the running host at once and mark the copy
// stale. SaveConfig() makes the running settings the saved ones (those that
// survive a reboot).
class DnsConfigImpl {
public:
    explicit DnsConfigImpl(std::string netStack = "defaultNetStack");
    bool IsStale() const;
    void Refresh();

    std::string GetHostname();
    std::string GetDomain();
    std::vector<HN::Ipv4Address> GetNameServers();
    // With includeLinkLocal false, link-local servers are left out.
    std::vector<HN::Ipv6Address> GetIpv6NameServers(bool includeLinkLocal);
    std::vector<std::string> GetSearchDomains();

    // A host name without dots. With save the change is saved at once.
    void SetHostname(const std::string& hostname, bool save);
    // "host.example.com": host name "host" and domain "example.com", or
    // domain when it is not empty.
    void SetFqdn(const std::string& fqdn, bool save, const std::string& domain);
    // Both IPv4 and IPv6 name servers.
    void RemoveNameServers();
    void AddUserNameServer(const HN::IpAddress& server);
    // Replaces the search domains by the names in text (separated by blanks
    // or commas).
    void SetSearchDomainsString(const std::string& text);
    // Appends unless present.
    void AddUserSearchDomain(const std::string& domain);
    void SaveConfig();

private:
    const Sim::Json& Data();
    void Change(const std::string& fault, const std::function<void(Sim::Json& dns)>& change);
    std::string netStack_;
    std::optional<Sim::Json> data_;
    bool changed_ = false;
};

// The host's "/etc/hosts".
class HostsFile {
public:
    explicit HostsFile(std::string hostPath = "/etc/hosts") : path_(std::move(hostPath)) {}
    // Takes the name (case-insensitive) off every line; a line left with no
    // name is dropped, comments and other lines stay. True when the name was
    // found. Throws when the file cannot be read or written.
    bool RemoveEntryByHostName(const std::string& hostname) const;

private:
    std::string path_;
};

}  // namespace ZrkCtl::Network
