// The right pane of the management network window: one markup text per topic
// (adapters, VLAN, IPv4, IPv6, DNS, suffixes) made from the pending
// configuration, so every edit shows at once.
#pragma once

#include <functional>
#include <string>

#include "network/pending_config.h"

namespace Tesk {

// The topics in the order of the window's selectable entries.
enum class NetworkTopic { Adapters, Vlan, Ipv4, Ipv6, Dns, Suffixes };

// How an adapter is named in the pane (its device name or MAC address).
using AdapterDescriber = std::function<std::string(const std::string& adapter)>;

std::string NetworkSummary(NetworkTopic topic, const PendingNetworkConfig& pending,
                           const AdapterDescriber& describe);

}  // namespace Tesk
