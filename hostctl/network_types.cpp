#include "hostctl/network_types.h"

#include <arpa/inet.h>
#include <net/if.h>

#include <algorithm>
#include <bit>
#include <cctype>
#include <cstdio>

#include "hostctl/exception.h"

namespace HostCtl::Network {
namespace {

// Splits "address%zone"; false when a "%" is followed by nothing or by a
// character an interface name cannot hold.
bool SplitZone(const std::string& text, std::string& address, std::string& zone) {
    auto percent = text.find('%');
    if (percent == std::string::npos) {
        address = text;
        zone.clear();
        return true;
    }
    address = text.substr(0, percent);
    zone = text.substr(percent + 1);
    if (zone.empty() || zone.size() >= IF_NAMESIZE) return false;
    return std::all_of(zone.begin(), zone.end(), [](unsigned char c) {
        return std::isalnum(c) || c == '_' || c == '-' || c == '.';
    });
}

bool ParseIpv6(const std::string& text, std::array<std::uint8_t, 16>& bytes) {
    in6_addr addr{};
    if (text.empty() || ::inet_pton(AF_INET6, text.c_str(), &addr) != 1) return false;
    std::copy(std::begin(addr.s6_addr), std::end(addr.s6_addr), bytes.begin());
    return true;
}

}  // namespace

std::unique_ptr<IpAddress> IpAddress::Parse(const std::string& text) {
    if (Ipv4Address::IsValidAddress(text)) return std::make_unique<Ipv4Address>(text);
    if (Ipv6Address::IsValidAddress(text)) return std::make_unique<Ipv6Address>(text);
    throw Lib::HostCtlException("Invalid IP address: '" + text + "'");
}

// --- IPv4 ----------------------------------------------------------------

Ipv4Address::Ipv4Address(const std::string& text) {
    in_addr addr{};
    if (::inet_pton(AF_INET, text.c_str(), &addr) != 1)
        throw Lib::HostCtlException("Invalid IPv4 address: '" + text + "'");
    value_ = ntohl(addr.s_addr);
}

Ipv4Address Ipv4Address::FromHostOrder(std::uint32_t value) {
    Ipv4Address a;
    a.value_ = value;
    return a;
}

bool Ipv4Address::IsValidAddress(const std::string& text) {
    in_addr addr{};
    return ::inet_pton(AF_INET, text.c_str(), &addr) == 1;
}

std::string Ipv4Address::GetStringAddress() const {
    in_addr addr{};
    addr.s_addr = htonl(value_);
    char buf[INET_ADDRSTRLEN] = {};
    ::inet_ntop(AF_INET, &addr, buf, sizeof buf);
    return buf;
}

std::unique_ptr<IpAddress> Ipv4Address::Clone() const {
    return std::make_unique<Ipv4Address>(*this);
}

bool Ipv4Address::IsValidNetmask() const {
    // Inverted, a contiguous mask is a run of low one bits: x & (x + 1) == 0.
    std::uint32_t inverted = ~value_;
    return (inverted & (inverted + 1)) == 0;
}

int Ipv4Address::GetPrefixLength() const {
    return std::countl_one(value_);
}

// --- IPv6 ----------------------------------------------------------------

Ipv6Address::Ipv6Address() = default;

Ipv6Address::Ipv6Address(const std::string& text) {
    std::string address;
    if (!SplitZone(text, address, zone_) || !ParseIpv6(address, bytes_))
        throw Lib::HostCtlException("Invalid IPv6 address: '" + text + "'");
}

bool Ipv6Address::IsValidAddress(const std::string& text) {
    std::string address, zone;
    std::array<std::uint8_t, 16> bytes{};
    return SplitZone(text, address, zone) && ParseIpv6(address, bytes);
}

std::string Ipv6Address::GetStringAddress() const {
    in6_addr addr{};
    std::copy(bytes_.begin(), bytes_.end(), std::begin(addr.s6_addr));
    char buf[INET6_ADDRSTRLEN] = {};
    ::inet_ntop(AF_INET6, &addr, buf, sizeof buf);
    return buf;
}

std::unique_ptr<IpAddress> Ipv6Address::Clone() const {
    return std::make_unique<Ipv6Address>(*this);
}

bool Ipv6Address::IsAnyAddress() const {
    return std::all_of(bytes_.begin(), bytes_.end(), [](std::uint8_t b) { return b == 0; });
}

std::string Ipv6Address::GetScopedStringAddress() const {
    return zone_.empty() ? GetStringAddress() : GetStringAddress() + "%" + zone_;
}

bool Ipv6Address::IsLinkLocal() const {
    return bytes_[0] == 0xfe && (bytes_[1] & 0xc0) == 0x80;
}

Ipv6Network::Ipv6Network(const Ipv6Address& address, int prefixLength, Ipv6AddressType type,
                         Ipv6Scope scope)
    : address_(address), prefixLength_(prefixLength), type_(type), scope_(scope) {
    if (prefixLength < 0 || prefixLength > 128)
        throw Lib::HostCtlException("Invalid IPv6 prefix length: " + std::to_string(prefixLength));
}

Ipv6Network::Ipv6Network(const std::string& text) {
    if (!IsValidAddressAndNetmask(text))
        throw Lib::HostCtlException("Invalid IPv6 network address: '" + text + "'");
    auto slash = text.find('/');
    address_ = Ipv6Address(text.substr(0, slash));
    prefixLength_ = std::stoi(text.substr(slash + 1));
    scope_ = address_.IsLinkLocal() ? Ipv6Scope::LinkLocal : Ipv6Scope::Global;
}

bool Ipv6Network::IsValidAddressAndNetmask(const std::string& text) {
    auto slash = text.find('/');
    if (slash == std::string::npos) return false;
    std::string prefix = text.substr(slash + 1);
    if (prefix.empty() || prefix.size() > 3 ||
        !std::all_of(prefix.begin(), prefix.end(), [](unsigned char c) { return std::isdigit(c); }))
        return false;
    if (std::stoi(prefix) > 128) return false;
    std::array<std::uint8_t, 16> bytes{};
    return ParseIpv6(text.substr(0, slash), bytes);
}

std::string Ipv6Network::GetStringAddress() const {
    return address_.GetStringAddress() + "/" + std::to_string(prefixLength_);
}

// --- MAC -----------------------------------------------------------------

bool MacAddress::IsValidAddress(const std::string& text) {
    if (text.size() != 17) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned char c = static_cast<unsigned char>(text[i]);
        if (i % 3 == 2) {
            if (c != ':' && c != '-') return false;
        } else if (!std::isxdigit(c)) {
            return false;
        }
    }
    return true;
}

MacAddress::MacAddress(const std::string& text) {
    if (!IsValidAddress(text)) throw Lib::HostCtlException("Invalid MAC address: '" + text + "'");
    for (std::size_t i = 0; i < 6; ++i)
        bytes_[i] = static_cast<std::uint8_t>(std::stoul(text.substr(i * 3, 2), nullptr, 16));
}

std::string MacAddress::GetStringAddress() const {
    char buf[18];
    std::snprintf(buf, sizeof buf, "%02x:%02x:%02x:%02x:%02x:%02x", bytes_[0], bytes_[1], bytes_[2],
                  bytes_[3], bytes_[4], bytes_[5]);
    return buf;
}

// --- IP configuration and teaming ---------------------------------------

void IpConfig::SetUseDhcp(bool useDhcp) {
    useDhcp_ = useDhcp;
    ipv4None_ = false;
}

void IpConfig::SetUseDhcp(bool useDhcp, bool ipv4None) {
    useDhcp_ = useDhcp;
    ipv4None_ = !useDhcp && ipv4None;
    if (ipv4None_) {
        ipv4Address_ = Ipv4Address();
        ipv4Netmask_ = Ipv4Address();
    }
}

void IpConfig::AddIpv6Network(const Ipv6Network& network) {
    if (std::find(ipv6Networks_.begin(), ipv6Networks_.end(), network) == ipv6Networks_.end())
        ipv6Networks_.push_back(network);
}

bool IpConfig::RemoveIpv6Network(const Ipv6Network& network) {
    auto before = ipv6Networks_.size();
    std::erase(ipv6Networks_, network);
    return ipv6Networks_.size() != before;
}

void NicTeamingPolicy::AddActiveUplink(const std::string& uplink) {
    std::erase(standby_, uplink);
    if (std::find(active_.begin(), active_.end(), uplink) == active_.end())
        active_.push_back(uplink);
}

bool NicTeamingPolicy::RemoveUplink(const std::string& uplink) {
    return std::erase(active_, uplink) + std::erase(standby_, uplink) > 0;
}

bool NicTeamingPolicy::HasUplink(const std::string& uplink) const {
    return std::find(active_.begin(), active_.end(), uplink) != active_.end() ||
           std::find(standby_.begin(), standby_.end(), uplink) != standby_.end();
}

}  // namespace HostCtl::Network
