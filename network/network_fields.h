// The management network window's values one field at a time, as plain
// texts: what the window read when it opened, what it holds now and what the
// host holds now can be compared field by field, and a field can be taken
// from one configuration into another. Two consoles editing the same host
// each write only the fields they changed.
#pragma once

#include <array>
#include <string>

#include "network/pending_config.h"

namespace Tesk {

enum class NetworkField { Adapters, Vlan, Ipv4, Ipv6, DnsServers, Hostname, Suffixes };
inline constexpr std::size_t kNetworkFieldCount = 7;

// Each field's values in one line ("static 192.168.10.21/255.255.255.0,
// gateway 192.168.10.1"), indexed by NetworkField.
using NetworkValues = std::array<std::string, kNetworkFieldCount>;
NetworkValues ValuesOf(const PendingNetworkConfig& config);

// "Host name", "IPv4 configuration", ...
const char* FieldLabel(NetworkField field);

// Copies the field's values from `from` into `into`, nothing else.
void TakeField(PendingNetworkConfig& into, const PendingNetworkConfig& from, NetworkField field);

}  // namespace Tesk
