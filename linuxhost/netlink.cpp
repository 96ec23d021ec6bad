#include "linuxhost/netlink.h"

#include <linux/if_addr.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <netlink/addr.h>
#include <netlink/cache.h>
#include <netlink/errno.h>
#include <netlink/netlink.h>
#include <netlink/route/addr.h>
#include <netlink/route/link.h>
#include <netlink/route/route.h>

#include <arpa/inet.h>

#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <mutex>

#include "hostctl/exception.h"
#include "platform/syslog.h"

namespace LinuxHost {
namespace {

using HostCtl::Lib::HostCtlException;

// IFF_LOWER_UP (linux/if.h, which clashes with net/if.h): the carrier.
constexpr unsigned kLowerUp = 1u << 16;

struct SocketFree {
    void operator()(nl_sock* s) const { nl_socket_free(s); }
};
struct CacheFree {
    void operator()(nl_cache* c) const { nl_cache_free(c); }
};
struct LinkPut {
    void operator()(rtnl_link* l) const { rtnl_link_put(l); }
};
using Socket = std::unique_ptr<nl_sock, SocketFree>;
using Cache = std::unique_ptr<nl_cache, CacheFree>;
using LinkRef = std::unique_ptr<rtnl_link, LinkPut>;

[[noreturn]] void Fail(const std::string& what, int error) {
    const std::string text = what + ": " + nl_geterror(error);
    Tesk::Platform::Log(LOG_ERR, "%s", text.c_str());
    throw HostCtlException(text);
}

Socket Connect() {
    Socket sock(nl_socket_alloc());
    if (!sock) throw HostCtlException("Cannot allocate a netlink socket");
    if (int r = nl_connect(sock.get(), NETLINK_ROUTE); r < 0)
        Fail("Connecting to the kernel's network failed", r);
    return sock;
}

// The text of an address without its prefix length.
std::string AddressText(nl_addr* addr) {
    if (addr == nullptr || nl_addr_get_len(addr) == 0) return {};
    char buffer[INET6_ADDRSTRLEN + 8];
    const int family = nl_addr_get_family(addr);
    if (family != AF_INET && family != AF_INET6) return {};
    if (inet_ntop(family, nl_addr_get_binary_addr(addr), buffer, sizeof buffer) == nullptr)
        return {};
    return buffer;
}

std::string MacText(nl_addr* addr) {
    if (addr == nullptr || nl_addr_get_len(addr) != 6) return {};
    const auto* b = static_cast<const unsigned char*>(nl_addr_get_binary_addr(addr));
    char buffer[18];
    std::snprintf(buffer, sizeof buffer, "%02x:%02x:%02x:%02x:%02x:%02x", b[0], b[1], b[2], b[3],
                  b[4], b[5]);
    return buffer;
}

template <typename Each>
void ForEach(nl_cache* cache, Each each) {
    for (nl_object* o = nl_cache_get_first(cache); o != nullptr; o = nl_cache_get_next(o)) each(o);
}

LinkRef Find(nl_sock* sock, const std::string& name) {
    rtnl_link* link = nullptr;
    const int r = rtnl_link_get_kernel(sock, 0, name.c_str(), &link);
    if (r < 0) Fail("Reading link " + name + " failed", r);
    return LinkRef(link);
}

void Change(const std::string& name, const std::string& what,
            const std::function<void(rtnl_link*)>& set) {
    Socket sock = Connect();
    LinkRef link = Find(sock.get(), name);
    LinkRef change(rtnl_link_alloc());
    set(change.get());
    if (int r = rtnl_link_change(sock.get(), link.get(), change.get(), 0); r < 0)
        Fail(what + " of " + name + " failed", r);
}

}  // namespace

const LinkFact* KernelNet::Link(const std::string& name) const {
    for (const auto& link : links)
        if (link.name == name) return &link;
    return nullptr;
}

const LinkFact* KernelNet::Link(int index) const {
    for (const auto& link : links)
        if (link.index == index) return &link;
    return nullptr;
}

KernelNet ReadKernelNet() {
    Socket sock = Connect();
    KernelNet net;
    nl_cache* raw = nullptr;
    if (int r = rtnl_link_alloc_cache(sock.get(), AF_UNSPEC, &raw); r < 0)
        Fail("Reading the links failed", r);
    Cache links(raw);
    ForEach(links.get(), [&](nl_object* o) {
        auto* link = reinterpret_cast<rtnl_link*>(o);
        LinkFact fact;
        fact.index = rtnl_link_get_ifindex(link);
        fact.name = rtnl_link_get_name(link) ? rtnl_link_get_name(link) : "";
        fact.mac = MacText(rtnl_link_get_addr(link));
        const char* kind = rtnl_link_get_type(link);
        fact.kind = kind ? kind : "";
        fact.master = rtnl_link_get_master(link);
        fact.ether = rtnl_link_get_arptype(link) == ARPHRD_ETHER;
        const unsigned flags = rtnl_link_get_flags(link);
        fact.up = (flags & IFF_UP) != 0;
        fact.carrier = (flags & kLowerUp) != 0;
        net.links.push_back(std::move(fact));
    });
    if (int r = rtnl_addr_alloc_cache(sock.get(), &raw); r < 0)
        Fail("Reading the addresses failed", r);
    Cache addrs(raw);
    ForEach(addrs.get(), [&](nl_object* o) {
        auto* addr = reinterpret_cast<rtnl_addr*>(o);
        AddrFact fact;
        fact.index = rtnl_addr_get_ifindex(addr);
        fact.ipv6 = rtnl_addr_get_family(addr) == AF_INET6;
        fact.address = AddressText(rtnl_addr_get_local(addr));
        if (fact.address.empty()) return;
        fact.prefix = rtnl_addr_get_prefixlen(addr);
        fact.linkLocal = rtnl_addr_get_scope(addr) == RT_SCOPE_LINK;
        const unsigned flags = rtnl_addr_get_flags(addr);
        fact.permanent = (flags & IFA_F_PERMANENT) != 0;
        fact.managed = fact.ipv6 && !fact.permanent && fact.prefix == 128;
        net.addrs.push_back(std::move(fact));
    });
    if (int r = rtnl_route_alloc_cache(sock.get(), AF_UNSPEC, 0, &raw); r < 0)
        Fail("Reading the routes failed", r);
    Cache routes(raw);
    ForEach(routes.get(), [&](nl_object* o) {
        auto* route = reinterpret_cast<rtnl_route*>(o);
        if (rtnl_route_get_table(route) != RT_TABLE_MAIN) return;
        nl_addr* dst = rtnl_route_get_dst(route);
        if (dst != nullptr && nl_addr_get_prefixlen(dst) != 0) return;
        if (rtnl_route_get_nnexthops(route) < 1) return;
        rtnl_nexthop* hop = rtnl_route_nexthop_n(route, 0);
        const std::string gateway = AddressText(rtnl_route_nh_get_gateway(hop));
        if (gateway.empty()) return;
        const bool ipv6 = rtnl_route_get_family(route) == AF_INET6;
        std::string& slot = ipv6 ? net.gateway6 : net.gateway4;
        if (!slot.empty()) return;
        slot = gateway;
        (ipv6 ? net.gateway6Link : net.gateway4Link) = rtnl_route_nh_get_ifindex(hop);
    });
    return net;
}

void SetLinkUp(const std::string& name, bool up) {
    Change(name, up ? "Bringing up" : "Taking down", [&](rtnl_link* change) {
        if (up)
            rtnl_link_set_flags(change, IFF_UP);
        else
            rtnl_link_unset_flags(change, IFF_UP);
    });
}

void SetLinkMac(const std::string& name, const std::string& mac) {
    nl_addr* raw = nullptr;
    if (int r = nl_addr_parse(mac.c_str(), AF_LLC, &raw); r < 0)
        Fail("Parsing MAC address " + mac + " failed", r);
    std::unique_ptr<nl_addr, void (*)(nl_addr*)> addr(raw, nl_addr_put);
    Change(name, "Setting the MAC address",
           [&](rtnl_link* change) { rtnl_link_set_addr(change, addr.get()); });
}

void ReleaseLink(const std::string& name) {
    Socket sock = Connect();
    LinkRef link = Find(sock.get(), name);
    if (rtnl_link_get_master(link.get()) == 0) return;
    if (int r = rtnl_link_release(sock.get(), link.get()); r < 0)
        Fail("Taking " + name + " out of its bridge failed", r);
}

void DeleteLink(const std::string& name) {
    Socket sock = Connect();
    LinkRef link(rtnl_link_alloc());
    rtnl_link_set_name(link.get(), name.c_str());
    const int r = rtnl_link_delete(sock.get(), link.get());
    if (r < 0 && r != -NLE_NODEV && r != -NLE_OBJ_NOTFOUND)
        Fail("Deleting link " + name + " failed", r);
}

bool KernelHasLinkKind(const std::string& kind) {
    static std::mutex mutex;
    static std::map<std::string, bool> known;
    std::lock_guard lock(mutex);
    if (auto found = known.find(kind); found != known.end()) return found->second;
    // A link of the kind with an MTU no link takes: a kernel that knows the
    // kind refuses the MTU (or the missing parent) before it makes anything;
    // one that does not refuses the kind itself.
    bool has = false;
    try {
        Socket sock = Connect();
        LinkRef link(rtnl_link_alloc());
        rtnl_link_set_name(link.get(), "teskprobe0");
        rtnl_link_set_mtu(link.get(), 1);
        if (rtnl_link_set_type(link.get(), kind.c_str()) == 0) {
            const int r = rtnl_link_add(sock.get(), link.get(), NLM_F_CREATE | NLM_F_EXCL);
            has = r != -NLE_OPNOTSUPP;
            if (r == 0) rtnl_link_delete(sock.get(), link.get());
        }
    } catch (const HostCtlException&) {
        has = false;
    }
    Tesk::Platform::Log(LOG_INFO, "The kernel %s %s links", has ? "makes" : "cannot make",
                        kind.c_str());
    known[kind] = has;
    return has;
}

}  // namespace LinuxHost
