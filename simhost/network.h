// The simulated host's networking: the HostCtl::Network interfaces over the
// "/network" part of the state (docs/simulated-host.md).
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hostctl/network.h"
#include "simhost/simhost.h"

namespace ZrkCtl::Network {

namespace HN = HostCtl::Network;

// The port-group operations every PortGroup handle of the simulated host
// shares.
std::shared_ptr<const HN::PortGroupOps> PortGroupOperations();

class PnicImpl : public HN::Pnic {
public:
    explicit PnicImpl(std::string name) : name_(std::move(name)) {}
    const std::string& GetName() const override { return name_; }
    bool IsStale() const override;
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
    void Refresh() override;

    HN::MacAddress GetMacAddress() override;
    void SetMacAddressFromPnic(HN::Pnic& pnic) override;
    HN::IpConfig GetIpConfig() override;
    HN::IpConfig GetConfiguredIpConfig() override;
    void SetIpConfig(const HN::IpConfig& config) override;
    HN::ConnectionPoint GetPortConnection() override;
    void ConnectToPortGroup(const std::string& portGroup) override;
    void Enable() override;
    void Disable() override;
    bool IsUsable() override;
    void InterfaceDown() override;
    void InterfaceUp() override;
    void RenewDhcp() override;
    void RenewDhcpv6() override;
    void RequestRenewal(bool release) override;
    void ConnectToQdsPort(const std::string& switchName, const std::string& portId) override;

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

class PortsetImpl : public HN::Portset {
public:
    explicit PortsetImpl(std::string name) : name_(std::move(name)) {}
    const std::string& GetName() const override { return name_; }
    bool IsValidVirtualSwitch() const override;
    std::vector<std::string> GetUplinks() const override;
    std::vector<std::string> GetPortGroups() const override;
    std::int64_t GetNumPorts() const override;
    std::int64_t GetUsedPorts() const override;
    std::int64_t GetConfiguredPorts() const override;
    HN::NicTeamingPolicy GetTeamingPolicy() const override;
    void SetTeamingPolicy(const HN::NicTeamingPolicy& policy) const override;
    void AddUplink(const std::string& pnic) const override;
    void RemoveUplink(const std::string& pnic) const override;
    HN::PortGroup AddPortGroup(const std::string& name, std::uint16_t vlanId = 0) const override;

private:
    std::string name_;
};

class PortGroupImpl : public HN::NamedPortGroup {
public:
    explicit PortGroupImpl(std::string name) : name_(std::move(name)) {}
    bool IsValidPortGroup() const override;

private:
    std::string name_;
};

class QdsSwitchImpl : public HN::QdsSwitch {
public:
    explicit QdsSwitchImpl(std::string name) : name_(std::move(name)) {}
    const std::string& GetName() const override { return name_; }
    std::map<std::string, std::string> GetUplinkMap() const override;
    void RemoveUplink(const std::string& pnic) const override;
    bool IsOwnKind() const override;
    HN::QdsPortSettings GetPortSettings(const std::string& portId) const override;
    std::string AddHostLocalPort(const HN::QdsPortSettings& settings) const override;

private:
    std::string name_;
};

class VirtualSwitchInfoImpl : public HN::VirtualSwitchInfo {
public:
    std::vector<std::unique_ptr<HN::Portset>> GetVirtualSwitches(
        HN::PortsetKind kind = HN::PortsetKind::All) const override;
    std::vector<std::unique_ptr<HN::QdsSwitch>> GetQdsSwitches() const override;
    std::unique_ptr<HN::Portset> AddVirtualSwitch(
        const std::string& name, std::int64_t numPorts = HN::Portset::DEF_NUM_PORTS) const override;
};

class ZerkelNicInfoImpl : public HN::ZerkelNicInfo {
public:
    std::vector<std::unique_ptr<HN::ZrkNic>> GetZerkelNics(
        HN::PortsetKind kind = HN::PortsetKind::All) const override;
};

class NetworkInfoImpl : public HN::NetworkInfo {
public:
    bool IsZrkIpv6Enabled() const override;
    void SetZrkIpv6Enabled(bool enabled) const override;
    std::vector<std::unique_ptr<HN::Pnic>> GetPnics(
        HN::PnicKind kind = HN::PnicKind::All) const override;
    std::vector<HN::PortGroup> GetAllPortGroups(
        HN::PortsetKind kind = HN::PortsetKind::All) const override;
    void UpdateManagementInterface() override;
    std::unique_ptr<HN::ZrkNic> GetManagementInterface() override;
    void ClearNetworkConfig() const override;
    void AutoConfigNetwork() const override;
    void DisableNetDumper() const override;

private:
    std::optional<std::string> management_;
    bool updated_ = false;
};

class RoutingInfoImpl : public HN::RoutingInfo {
public:
    explicit RoutingInfoImpl(std::string netStack = "defaultNetStack");
    HN::Ipv4Address GetZerkelDefaultGateway() const override;
    void SetZerkelDefaultGateway(const HN::Ipv4Address& gateway,
                                 bool checkReachable = false) const override;
    HN::Ipv6Address GetIpv6ZerkelDefaultGateway() const override;
    void SetIpv6ZerkelDefaultGateway(const HN::Ipv6Address& gateway) const override;

private:
    std::string netStack_;
};

class DnsConfigImpl : public HN::DnsConfig {
public:
    explicit DnsConfigImpl(std::string netStack = "defaultNetStack");
    bool IsStale() const override;
    void Refresh() override;
    std::string GetHostname() override;
    std::string GetDomain() override;
    std::vector<HN::Ipv4Address> GetNameServers() override;
    std::vector<HN::Ipv6Address> GetIpv6NameServers(bool includeLinkLocal) override;
    std::vector<std::string> GetSearchDomains() override;
    void SetHostname(const std::string& hostname, bool save) override;
    void SetFqdn(const std::string& fqdn, bool save, const std::string& domain) override;
    void RemoveNameServers() override;
    void AddUserNameServer(const HN::IpAddress& server) override;
    void SetSearchDomainsString(const std::string& text) override;
    void AddUserSearchDomain(const std::string& domain) override;
    void SaveConfig() override;

private:
    const Sim::Json& Data();
    void Change(const std::string& fault, const std::function<void(Sim::Json& dns)>& change);
    std::string netStack_;
    std::optional<Sim::Json> data_;
    bool changed_ = false;
};

}  // namespace ZrkCtl::Network
