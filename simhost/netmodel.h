// The network part of the simulated host's state ("/network") as the ZrkCtl
// implementations read and change it. Internal to simhost/.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "hostctl/network_types.h"
#include "simhost/simhost.h"

namespace ZrkCtl::Network::Model {

using Json = Sim::Json;

// state["network"], made an object when missing.
Json& Net(Json& state);
const Json& Net(const Json& state);

// Array members by name; null when there is none.
Json* FindByName(Json& array, const std::string& name);
const Json* FindByName(const Json& array, const std::string& name);

// The named array of net ("pnics", "zrkNics", "standardSwitches",
// "distributedSwitches"), made an array when missing.
Json& List(Json& net, const char* key);
const Json& List(const Json& net, const char* key);

// Throws HostCtlException "<what> <name> not found" when absent.
Json& Require(Json& net, const char* key, const std::string& name, const char* what);
const Json& Require(const Json& net, const char* key, const std::string& name, const char* what);

// The standard switch holding the port group and the group; both null when
// no switch has it.
std::pair<Json*, Json*> FindPortGroup(Json& net, const std::string& name);
std::pair<const Json*, const Json*> FindPortGroup(const Json& net, const std::string& name);

std::vector<std::string> Strings(const Json& array);

// Teaming policies: {"activeUplinks": [...], "standbyUplinks": [...],
// "maxActiveUplinks": n}.
HostCtl::Network::NicTeamingPolicy PolicyFromJson(const Json& j);
Json PolicyToJson(const HostCtl::Network::NicTeamingPolicy& p);
// The group's policy, or its switch's when the group has none.
HostCtl::Network::NicTeamingPolicy EffectivePolicy(const Json& vswitch, const Json& portGroup);

// IP configurations (see docs/simulated-host.md for the keys).
HostCtl::Network::IpConfig IpConfigFromJson(const Json& j);
Json IpConfigToJson(const HostCtl::Network::IpConfig& c);
HostCtl::Network::Ipv6Network Ipv6NetworkFromJson(const Json& j);
Json Ipv6NetworkToJson(const HostCtl::Network::Ipv6Network& n);
const char* TypeName(HostCtl::Network::Ipv6AddressType type);
const char* ScopeName(HostCtl::Network::Ipv6Scope scope);

// Zerkel NICs connected to a port group, and a port group's active clients.
int ConnectedNics(const Json& net, const std::string& portGroup);
std::int64_t ActiveClients(const Json& net, const Json& portGroup);

// The switch (standard or distributed) that has the physical NIC as an
// uplink; empty when none.
std::string UplinkOwner(const Json& net, const std::string& pnic);
// Takes the physical NIC away from every switch except keepSwitch: uplink
// lists, uplink maps and teaming policies.
void ReleaseUplink(Json& net, const std::string& pnic, const std::string& keepSwitch = {});

// Brings a Zerkel NIC's addresses in effect ("current") in line with its
// configuration. With askDhcp the DHCP servers are asked (an answer replaces
// the lease); with release the IPv4 lease is dropped first.
void UpdateCurrent(Json& net, Json& nic, bool askDhcp, bool release);

// The NIC's addresses in effect: its "current" entry, or, when it has none,
// what its configuration gives without asking a DHCP server.
Json CurrentOf(const Json& net, const Json& nic);

// fe80::/64 with the interface id made from the MAC address (EUI-64).
HostCtl::Network::Ipv6Network LinkLocalFor(const HostCtl::Network::MacAddress& mac);

}  // namespace ZrkCtl::Network::Model
