// Physical NICs and the management interface (the bridge, or its VLAN link,
// that carries the management addresses).
#include <optional>

#include "hostctl/exception.h"
#include "linuxhost/apply_wait.h"
#include "linuxhost/fail.h"
#include "linuxhost/management.h"
#include "linuxhost/net_objects.h"
#include "linuxhost/networkd_bus.h"
#include "linuxhost/nic_facts.h"
#include "platform/syslog.h"

namespace LinuxHost {
namespace {

namespace HN = HostCtl::Network;
using HostCtl::Lib::HostCtlException;

HN::Ipv4Address Netmask(int prefix) {
    return HN::Ipv4Address::FromHostOrder(prefix <= 0 ? 0 : ~0u << (32 - prefix));
}

class LinuxPnic : public HN::Pnic {
public:
    explicit LinuxPnic(std::string name) : name_(std::move(name)) {}
    const std::string& GetName() const override { return name_; }
    bool IsStale() const override {
        if (!link_) return true;
        try {
            const auto now = Read();
            return !now || now->mac != link_->mac || now->carrier != link_->carrier;
        } catch (const HostCtlException&) {
            return true;
        }
    }
    void Refresh() override {
        auto link = Read();
        if (!link) Fail("Physical NIC " + name_ + " not found");
        link_ = std::move(link);
        hardware_ = ReadNicHardware(name_);
    }
    std::optional<HN::PciDevice> GetPciDevice() override {
        Load();
        if (hardware_.pciAddress.empty()) return std::nullopt;
        return HN::PciDevice{hardware_.pciAddress, "", ""};
    }
    HN::MacAddress GetMacAddress() override {
        Load();
        return HN::MacAddress(link_->mac);
    }
    bool IsLinkUp() override {
        Load();
        return link_->carrier;
    }

private:
    std::optional<LinkFact> Read() const {
        const KernelNet net = ReadKernelNet();
        const LinkFact* link = net.Link(name_);
        if (link == nullptr || !IsPhysicalNic(*link)) return std::nullopt;
        return *link;
    }
    void Load() {
        if (!link_) Refresh();
    }
    std::string name_;
    std::optional<LinkFact> link_;
    NicHardware hardware_;
};

// What a management interface object holds between refreshes.
struct NicSnapshot {
    KernelNet net;
    ManagementConfig config;
    const LinkFact* Link() const { return net.Link(config.Interface()); }
    // Everything a reader of the object sees, to tell a change.
    std::string Key() const {
        std::string key;
        for (const auto& [name, text] : RenderNetworkd(config)) key += name + text;
        if (const LinkFact* link = Link()) {
            key += link->mac + (link->up ? "U" : "D") + (link->carrier ? "C" : "N");
            for (const auto& addr : net.addrs)
                if (addr.index == link->index)
                    key += addr.address + "/" + std::to_string(addr.prefix) + ",";
        }
        return key + net.gateway4 + "," + net.gateway6;
    }
};

class LinuxZrkNic : public HN::ZrkNic {
public:
    explicit LinuxZrkNic(std::string name) : name_(std::move(name)) {}
    const std::string& GetName() const override { return name_; }
    bool IsStale() const override {
        if (!data_ || changed_) return true;
        try {
            const auto now = Read();
            return !now || now->Key() != data_->Key();
        } catch (const HostCtlException&) {
            return true;
        }
    }
    void Refresh() override {
        auto now = Read();
        if (!now) Fail("Zerkel NIC " + name_ + " not found");
        data_ = std::move(now);
        changed_ = false;
    }

    HN::MacAddress GetMacAddress() override {
        const LinkFact* link = Data().Link();
        return link && !link->mac.empty() ? HN::MacAddress(link->mac) : HN::MacAddress();
    }
    void SetMacAddressFromPnic(HN::Pnic& pnic) override {
        if (pnic.IsStale()) pnic.Refresh();
        const std::string mac = pnic.GetMacAddress().GetStringAddress();
        Change([&](ManagementConfig& c) { c.mac = mac; });
    }
    HN::IpConfig GetIpConfig() override {
        const NicSnapshot& d = Data();
        HN::IpConfig ip = ModesOf(d.config.ip);
        if (const LinkFact* link = d.Link()) {
            bool v4 = false;
            std::vector<HN::Ipv6Network> networks;
            for (const auto& addr : d.net.addrs) {
                if (addr.index != link->index) continue;
                if (!addr.ipv6) {
                    if (v4) continue;
                    v4 = true;
                    ip.SetIpv4Address(HN::Ipv4Address(addr.address));
                    ip.SetIpv4Netmask(Netmask(addr.prefix));
                    continue;
                }
                const auto type = addr.linkLocal   ? HN::Ipv6AddressType::LinkLayer
                                  : addr.managed   ? HN::Ipv6AddressType::Dhcp
                                  : addr.permanent ? HN::Ipv6AddressType::Static
                                                   : HN::Ipv6AddressType::Autoconf;
                networks.emplace_back(
                    HN::Ipv6Address(addr.address), addr.prefix, type,
                    addr.linkLocal ? HN::Ipv6Scope::LinkLocal : HN::Ipv6Scope::Global);
            }
            ip.SetIpv6Networks(std::move(networks));
        }
        if (!d.net.gateway4.empty()) ip.SetIpv4Gateway(HN::Ipv4Address(d.net.gateway4));
        if (!d.net.gateway6.empty()) ip.SetIpv6Gateway(HN::Ipv6Address(d.net.gateway6));
        return ip;
    }
    HN::IpConfig GetConfiguredIpConfig() override { return Data().config.ip; }
    void SetIpConfig(const HN::IpConfig& config) override {
        if (!config.GetUseDhcp() && !config.GetIpv4UseNone() &&
            !config.GetIpv4Netmask().IsValidNetmask())
            Fail("Invalid netmask " + config.GetIpv4Netmask().GetStringAddress());
        Change([&](ManagementConfig& c) {
            // The default gateways are the routing's to set; the ones given
            // here are what the host has now, learnt ones included.
            const HN::Ipv4Address gateway4 = c.ip.GetIpv4Gateway();
            const HN::Ipv6Address gateway6 = c.ip.GetIpv6Gateway();
            c.ip = config;
            c.ip.SetIpv4Gateway(gateway4);
            c.ip.SetIpv6Gateway(gateway6);
            if (config.GetUseDhcp() || config.GetIpv4UseNone()) {
                c.ip.SetIpv4Address({});
                c.ip.SetIpv4Netmask({});
                c.ip.SetIpv4Gateway({});
            }
            std::vector<HN::Ipv6Network> statics;
            for (const auto& n : config.GetIpv6Networks())
                if (n.GetIpv6AddressType() == HN::Ipv6AddressType::Static &&
                    !n.GetAddress().IsLinkLocal())
                    statics.push_back(n);
            c.ip.SetIpv6Networks(std::move(statics));
        });
    }

    HN::ConnectionPoint GetPortConnection() override {
        return HN::ConnectionPoint::ToPortGroup(kManagementPortGroup, Data().config.bridge,
                                                ManagementPortGroupOps());
    }
    void ConnectToPortGroup(const std::string& portGroup) override {
        if (portGroup != kManagementPortGroup) Fail("No port group named " + portGroup);
    }

    void Enable() override { SetUp(true); }
    void Disable() override { SetUp(false); }
    bool IsUsable() override {
        const LinkFact* link = Data().Link();
        return link != nullptr && link->up;
    }
    void InterfaceDown() override { SetUp(false); }
    void InterfaceUp() override {
        SetUp(true);
        const int index = Index();
        Networkd::Reconfigure(index);
        // Until networkd is done, it may still change the link's state.
        WaitApplied(Current().config);
    }

    void RenewDhcp() override {
        if (!Current().config.ip.GetUseDhcp()) Fail(name_ + " does not use DHCP");
        Networkd::ForceRenew(Index());
        changed_ = true;
    }
    void RenewDhcpv6() override {
        if (!Current().config.ip.GetUseIpv6Dhcp()) Fail(name_ + " does not use DHCPv6");
        Networkd::Reconfigure(Index());
        changed_ = true;
    }
    void RequestRenewal(bool /*release*/) override {
        // networkd releases the lease when it configures the link again.
        Networkd::Reconfigure(Index());
        changed_ = true;
    }
    void ConnectToQdsPort(const std::string& /*switchName*/,
                          const std::string& /*portId*/) override {
        Fail("Distributed switches do not exist on this host");
    }

private:
    static HN::IpConfig ModesOf(const HN::IpConfig& configured) {
        HN::IpConfig ip;
        ip.SetUseDhcp(configured.GetUseDhcp(), configured.GetIpv4UseNone());
        ip.EnableIpv6(configured.IsIpv6Enabled());
        ip.SetUseIpv6Dhcp(configured.GetUseIpv6Dhcp());
        ip.SetUseIpv6RouterAdvertised(configured.GetUseIpv6RouterAdvertised());
        ip.SetDhcpDns(configured.GetDhcpDns());
        return ip;
    }
    std::optional<NicSnapshot> Read() const {
        NicSnapshot snapshot;
        snapshot.net = ReadKernelNet();
        auto config = LoadManagement(snapshot.net);
        if (!config || config->Interface() != name_) return std::nullopt;
        snapshot.config = std::move(*config);
        return snapshot;
    }
    const NicSnapshot& Data() {
        if (!data_) Refresh();
        return *data_;
    }
    // The host's configuration now, not the copy: a renewal follows what
    // was set last, through this object or another.
    NicSnapshot Current() const {
        auto now = Read();
        if (!now) Fail("The link " + name_ + " is no longer the management interface");
        return std::move(*now);
    }
    int Index() {
        const KernelNet net = ReadKernelNet();  // the link points into it
        const LinkFact* link = net.Link(name_);
        if (link == nullptr) Fail("The link " + name_ + " does not exist");
        return link->index;
    }
    void SetUp(bool up) {
        Tesk::Platform::Log(LOG_INFO, "Taking %s %s", name_.c_str(), up ? "up" : "down");
        SetLinkUp(name_, up);
        changed_ = true;
    }
    void Change(const std::function<void(ManagementConfig&)>& change) {
        ChangeManagement(change);
        changed_ = true;
    }

    std::string name_;
    std::optional<NicSnapshot> data_;
    bool changed_ = false;
};

}  // namespace

std::unique_ptr<HN::Pnic> MakePnic(const std::string& name) {
    return std::make_unique<LinuxPnic>(name);
}

std::unique_ptr<HN::ZrkNic> MakeManagementNic(const std::string& name) {
    return std::make_unique<LinuxZrkNic>(name);
}

}  // namespace LinuxHost
