// The kernel's network as netlink tells it: links, addresses and default
// routes read in one go, and the few link changes the backend makes itself
// (up, down, MAC address, delete). The socket is opened per call, so nothing
// is opened before a screen asks. Failures throw HostCtl::Lib::HostCtlException.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "hostctl/host_watch.h"

namespace LinuxHost {

struct LinkFact {
    int index = 0;
    std::string name;
    std::string mac;   // "02:7e:5c:00:00:10", empty when the link has none
    std::string kind;  // "bridge", "veth", "vlan", ...; empty for a plain device
    int master = 0;    // the bridge it is a port of, 0 when none
    bool ether = false;
    bool up = false;       // administratively up
    bool carrier = false;  // lower layer up
};

struct AddrFact {
    int index = 0;
    bool ipv6 = false;
    std::string address;  // without prefix
    int prefix = 0;
    bool linkLocal = false;
    bool permanent = false;  // configured by hand rather than learnt (no lifetime)
    bool managed = false;    // learnt from a DHCPv6 server (not from the router)
};

struct KernelNet {
    std::vector<LinkFact> links;
    std::vector<AddrFact> addrs;
    std::string gateway4, gateway6;  // the main table's default routes
    int gateway4Link = 0, gateway6Link = 0;

    const LinkFact* Link(const std::string& name) const;
    const LinkFact* Link(int index) const;
};

KernelNet ReadKernelNet();

void SetLinkUp(const std::string& name, bool up);
void SetLinkMac(const std::string& name, const std::string& mac);
// Takes the link out of the bridge it is a port of.
void ReleaseLink(const std::string& name);
// Deletes the link; a link that is already gone is not an error.
void DeleteLink(const std::string& name);

// A watch on the kernel's links, addresses and routes: a netlink socket
// that their change notifications make readable. Throws (logged) when the
// socket cannot be made.
std::unique_ptr<HostCtl::HostWatch> WatchNetwork();

// Whether the kernel can make links of this kind ("vlan", "bond"): asked
// once per kind with a request that cannot create anything.
bool KernelHasLinkKind(const std::string& kind);

}  // namespace LinuxHost
