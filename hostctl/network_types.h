// Value types of the host's networking: addresses, IP configurations and the
// small records that describe switches, port groups and teaming policies.
#pragma once

#include <netinet/in.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace HostCtl::Network {

// Any IP address; the DNS servers of the management network are held as
// owning pointers to this base.
class IpAddress {
public:
    enum class Family { Ipv4, Ipv6 };

    virtual ~IpAddress() = default;
    virtual Family GetFamily() const = 0;
    // The plain text form ("192.168.1.1", "fe80::1").
    virtual std::string GetStringAddress() const = 0;
    virtual std::unique_ptr<IpAddress> Clone() const = 0;
    // True for the any address: 0.0.0.0 or "::".
    virtual bool IsAnyAddress() const = 0;

    bool IsIpv4() const { return GetFamily() == Family::Ipv4; }
    bool IsIpv6() const { return GetFamily() == Family::Ipv6; }

    // Parses either family; throws HostCtl::Lib::HostCtlException when the text
    // is neither an IPv4 nor an IPv6 address.
    static std::unique_ptr<IpAddress> Parse(const std::string& text);
};

class Ipv4Address : public IpAddress {
public:
    Ipv4Address() = default;  // 0.0.0.0
    // Throws HostCtl::Lib::HostCtlException when text is not a dotted quad.
    explicit Ipv4Address(const std::string& text);
    // From a host-order value: 0xC0A80101 is 192.168.1.1.
    static Ipv4Address FromHostOrder(std::uint32_t value);

    // Dotted-quad text with exactly four decimal parts.
    static bool IsValidAddress(const std::string& text);

    Family GetFamily() const override { return Family::Ipv4; }
    std::string GetStringAddress() const override;
    std::unique_ptr<IpAddress> Clone() const override;
    bool IsAnyAddress() const override { return value_ == 0; }

    // The address as a host-order 32-bit value; 0 for 0.0.0.0.
    std::uint32_t GetAddress() const { return value_; }
    // A netmask is a run of one bits followed only by zero bits; 0.0.0.0 and
    // 255.255.255.255 count as netmasks.
    bool IsValidNetmask() const;
    // The number of leading one bits of a valid netmask.
    int GetPrefixLength() const;

    bool operator==(const Ipv4Address& other) const { return value_ == other.value_; }

private:
    std::uint32_t value_ = 0;
};

// Address types of IPv6 addresses, as the host reports how each was obtained.
// The first value is the kind given to addresses configured by hand.
enum class Ipv6AddressType : int {
    Static = 0,
    Other = 1,
    Temporary = 2,
    Deprecated = 3,
    Tentative = 4,
    Duplicate = 5,
    LinkLayer = 6,
    Autoconf = 7,
    Random = 8,
    Dhcp = 9,
};

// IPv6 address scopes. Static addresses added by the console get Global.
enum class Ipv6Scope : int {
    Unknown = 0,
    LinkLocal = 1,
    SiteLocal = 2,
    Global = 3,
    Loopback = 4,
};

class Ipv6Address : public IpAddress {
public:
    Ipv6Address();  // "::"
    // Accepts an optional zone ("fe80::1%zrk0"); throws
    // HostCtl::Lib::HostCtlException when the text is not an IPv6 address.
    explicit Ipv6Address(const std::string& text);

    // An IPv6 address in text form, optionally followed by "%" and a zone (an
    // interface name). The empty text is not an address.
    static bool IsValidAddress(const std::string& text);

    Family GetFamily() const override { return Family::Ipv6; }
    // The address without its zone, in the canonical compressed form.
    std::string GetStringAddress() const override;
    std::unique_ptr<IpAddress> Clone() const override;
    bool IsAnyAddress() const override;

    // The address with "%zone" appended when it carries a zone.
    std::string GetScopedStringAddress() const;
    const std::string& GetZone() const { return zone_; }
    void SetZone(const std::string& zone) { zone_ = zone; }
    // fe80::/10.
    bool IsLinkLocal() const;
    const std::array<std::uint8_t, 16>& GetBytes() const { return bytes_; }

    // Compares the address and the zone.
    bool operator==(const Ipv6Address& other) const {
        return bytes_ == other.bytes_ && zone_ == other.zone_;
    }

private:
    std::array<std::uint8_t, 16> bytes_{};
    std::string zone_;
};

// An IPv6 address with its prefix length, address type and scope.
class Ipv6Network {
public:
    Ipv6Network() = default;
    Ipv6Network(const Ipv6Address& address, int prefixLength,
                Ipv6AddressType type = Ipv6AddressType::Static,
                Ipv6Scope scope = Ipv6Scope::Global);
    // "2001:db8::1/64"; throws HostCtl::Lib::HostCtlException unless
    // IsValidAddressAndNetmask(text). The scope follows the address
    // (link-local or global); the type is Static.
    explicit Ipv6Network(const std::string& text);

    // An address without zone, "/" and a prefix length of 0 to 128.
    static bool IsValidAddressAndNetmask(const std::string& text);

    const Ipv6Address& GetAddress() const { return address_; }
    int GetPrefixLength() const { return prefixLength_; }
    // "address/prefix".
    std::string GetStringAddress() const;

    Ipv6AddressType GetIpv6AddressType() const { return type_; }
    void SetIpv6AddressType(Ipv6AddressType type) { type_ = type; }
    Ipv6Scope GetScope() const { return scope_; }
    void SetScope(Ipv6Scope scope) { scope_ = scope; }

    // Equal address and prefix length (type and scope are how it was learnt,
    // not which network it is).
    bool operator==(const Ipv6Network& other) const {
        return address_.GetBytes() == other.address_.GetBytes() &&
               prefixLength_ == other.prefixLength_;
    }

private:
    Ipv6Address address_;
    int prefixLength_ = 0;
    Ipv6AddressType type_ = Ipv6AddressType::Static;
    Ipv6Scope scope_ = Ipv6Scope::Global;
};

class MacAddress {
public:
    MacAddress() = default;  // 00:00:00:00:00:00
    // Six hexadecimal pairs separated by ":" or "-"; throws
    // HostCtl::Lib::HostCtlException otherwise.
    explicit MacAddress(const std::string& text);
    static bool IsValidAddress(const std::string& text);

    // Lower-case, colon-separated: "02:5a:4b:ab:cd:ef".
    std::string GetStringAddress() const;
    const std::array<std::uint8_t, 6>& GetBytes() const { return bytes_; }
    bool operator==(const MacAddress& other) const { return bytes_ == other.bytes_; }

private:
    std::array<std::uint8_t, 6> bytes_{};
};

// One interface's IP settings. The same type carries what is configured (the
// mode flags and static addresses) and what is in effect (the addresses the
// interface has now); it is copied by value.
class IpConfig {
public:
    // IPv4 mode: DHCP, static, or none (IPv4 switched off).
    bool GetUseDhcp() const { return useDhcp_; }
    bool GetIpv4UseNone() const { return ipv4None_; }
    // DHCP on, or static when false (clears "none").
    void SetUseDhcp(bool useDhcp);
    // SetUseDhcp(false, true) switches IPv4 off; (false, false) is static;
    // (true, x) is DHCP.
    void SetUseDhcp(bool useDhcp, bool ipv4None);

    const Ipv4Address& GetIpv4Address() const { return ipv4Address_; }
    void SetIpv4Address(const Ipv4Address& address) { ipv4Address_ = address; }
    const Ipv4Address& GetIpv4Netmask() const { return ipv4Netmask_; }
    void SetIpv4Netmask(const Ipv4Address& netmask) { ipv4Netmask_ = netmask; }
    const Ipv4Address& GetIpv4Gateway() const { return ipv4Gateway_; }
    void SetIpv4Gateway(const Ipv4Address& gateway) { ipv4Gateway_ = gateway; }

    bool IsIpv6Enabled() const { return ipv6Enabled_; }
    void EnableIpv6(bool enable = true) { ipv6Enabled_ = enable; }
    bool GetUseIpv6Dhcp() const { return useIpv6Dhcp_; }
    void SetUseIpv6Dhcp(bool use) { useIpv6Dhcp_ = use; }
    bool GetUseIpv6RouterAdvertised() const { return useIpv6RouterAdvertised_; }
    void SetUseIpv6RouterAdvertised(bool use) { useIpv6RouterAdvertised_ = use; }

    // The interface's IPv6 addresses, in the host's order.
    const std::vector<Ipv6Network>& GetIpv6Networks() const { return ipv6Networks_; }
    void SetIpv6Networks(std::vector<Ipv6Network> networks) { ipv6Networks_ = std::move(networks); }
    // Appends the network unless an equal one is already there.
    void AddIpv6Network(const Ipv6Network& network);
    // Removes every equal network; true when one was removed.
    bool RemoveIpv6Network(const Ipv6Network& network);
    void ClearIpv6Networks() { ipv6Networks_.clear(); }

    const Ipv6Address& GetIpv6Gateway() const { return ipv6Gateway_; }
    void SetIpv6Gateway(const Ipv6Address& gateway) { ipv6Gateway_ = gateway; }

    // DNS servers and host name obtained by DHCP.
    bool GetDhcpDns() const { return dhcpDns_; }
    void SetDhcpDns(bool use) { dhcpDns_ = use; }
    // True when any address comes from a DHCP server: IPv4 DHCP, or IPv6 on
    // with DHCPv6.
    bool IsUsingDhcp() const { return useDhcp_ || (ipv6Enabled_ && useIpv6Dhcp_); }

private:
    bool useDhcp_ = false;
    bool ipv4None_ = false;
    Ipv4Address ipv4Address_;
    Ipv4Address ipv4Netmask_;
    Ipv4Address ipv4Gateway_;
    bool ipv6Enabled_ = false;
    bool useIpv6Dhcp_ = false;
    bool useIpv6RouterAdvertised_ = false;
    std::vector<Ipv6Network> ipv6Networks_;
    Ipv6Address ipv6Gateway_;
    bool dhcpDns_ = false;
};

// Which uplinks a switch or port group uses, in order of preference.
class NicTeamingPolicy {
public:
    const std::vector<std::string>& GetActiveUplinks() const { return active_; }
    void SetActiveUplinks(std::vector<std::string> uplinks) { active_ = std::move(uplinks); }
    const std::vector<std::string>& GetStandbyUplinks() const { return standby_; }
    void SetStandbyUplinks(std::vector<std::string> uplinks) { standby_ = std::move(uplinks); }
    // How many of the active uplinks carry traffic at once.
    std::int32_t GetMaxActiveUplinks() const { return maxActive_; }
    void SetMaxActiveUplinks(std::int32_t count) { maxActive_ = count; }

    // Appends to the active list (and takes it off standby) unless present.
    void AddActiveUplink(const std::string& uplink);
    // Drops the uplink from both lists; true when it was in either.
    bool RemoveUplink(const std::string& uplink);
    bool HasUplink(const std::string& uplink) const;

private:
    std::vector<std::string> active_;
    std::vector<std::string> standby_;
    std::int32_t maxActive_ = 1;
};

}  // namespace HostCtl::Network
