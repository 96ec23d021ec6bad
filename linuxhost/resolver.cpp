// Name resolution for the network test: the host's name asked of the name
// servers in the host's /etc/resolv.conf (under the host root), completed
// with its search domains, by DNS over UDP. The hosts file is never read.
#include <arpa/inet.h>
#include <arpa/nameser.h>
#include <netdb.h>
#include <resolv.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "hostctl/exception.h"
#include "linuxhost/net_objects.h"
#include "linuxhost/resolv_conf.h"
#include "platform/syslog.h"
#include "platform/waiting.h"

namespace LinuxHost {
namespace {

constexpr int kWaitMs = 2000;

// Whether answer (n bytes) answers the query with an address record.
bool HasAddress(const unsigned char* answer, int n) {
    if (n < HFIXEDSZ) return false;
    const int rcode = answer[3] & 0x0f;
    const int questions = answer[4] << 8 | answer[5];
    const int answers = answer[6] << 8 | answer[7];
    if (rcode != 0 || answers == 0) return false;
    const unsigned char* at = answer + HFIXEDSZ;
    const unsigned char* end = answer + n;
    char name[NS_MAXDNAME];
    for (int i = 0; i < questions; ++i) {
        const int length = ::dn_expand(answer, end, at, name, sizeof name);
        if (length < 0 || at + length + QFIXEDSZ > end) return false;
        at += length + QFIXEDSZ;
    }
    for (int i = 0; i < answers; ++i) {
        const int length = ::dn_expand(answer, end, at, name, sizeof name);
        if (length < 0 || at + length + RRFIXEDSZ > end) return false;
        at += length;
        const int type = at[0] << 8 | at[1];
        const int size = at[8] << 8 | at[9];
        at += RRFIXEDSZ + size;
        if (at > end) return false;
        if (type == ns_t_a || type == ns_t_aaaa) return true;
    }
    return false;
}

// Asks one server for one record type of name.
bool Ask(const std::string& server, const std::string& name, int type) {
    unsigned char query[NS_PACKETSZ];
    const int size = ::res_mkquery(ns_o_query, name.c_str(), ns_c_in, type, nullptr, 0, nullptr,
                                   query, sizeof query);
    if (size < 0) return false;
    addrinfo hints{};
    hints.ai_flags = AI_NUMERICHOST;
    hints.ai_socktype = SOCK_DGRAM;
    addrinfo* found = nullptr;
    if (::getaddrinfo(server.c_str(), "53", &hints, &found) != 0 || found == nullptr) return false;
    std::unique_ptr<addrinfo, void (*)(addrinfo*)> address(found, ::freeaddrinfo);
    const int fd = ::socket(found->ai_family, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd < 0) return false;
    std::unique_ptr<int, void (*)(int*)> closer(new int(fd), [](int* f) {
        ::close(*f);
        delete f;
    });
    if (::connect(fd, found->ai_addr, found->ai_addrlen) != 0 ||
        ::send(fd, query, size, 0) != size) {
        // Not sent (the address or route is still being set up): unanswered
        // after the usual wait, as on a wire that drops it.
        Tesk::Platform::PauseUnlessQuit(std::chrono::milliseconds(kWaitMs));
        return false;
    }
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kWaitMs);
    while (Tesk::Platform::WaitForInput(fd, end)) {
        unsigned char answer[NS_MAXMSG];
        const ssize_t n = ::recv(fd, answer, sizeof answer, 0);
        // Only the answer to this query counts (same id).
        if (n >= HFIXEDSZ && answer[0] == query[0] && answer[1] == query[1])
            return HasAddress(answer, static_cast<int>(n));
    }
    return false;
}

class LinuxResolver : public HostCtl::Network::Resolver {
public:
    bool Resolve(const std::string& name) const override {
        const ResolvConf conf = ReadResolvConf();
        if (conf.nameServers.empty())
            throw HostCtl::Lib::HostCtlException("The host has no name server to ask");
        // As the resolver does with ndots 1: a name with a dot as it is
        // first, a bare name with the search domains first.
        std::vector<std::string> candidates;
        const bool dotted = name.find('.') != std::string::npos;
        if (dotted) candidates.push_back(name);
        for (const auto& domain : conf.search) candidates.push_back(name + "." + domain);
        if (!dotted) candidates.push_back(name);
        for (const auto& candidate : candidates)
            for (const auto& server : conf.nameServers)
                for (int type : {ns_t_a, ns_t_aaaa})
                    if (Ask(server, candidate, type)) {
                        Tesk::Platform::Log(LOG_INFO, "%s resolved by %s", candidate.c_str(),
                                            server.c_str());
                        return true;
                    }
        Tesk::Platform::Log(LOG_WARNING, "%s did not resolve", name.c_str());
        return false;
    }
};

}  // namespace

std::unique_ptr<HostCtl::Network::Resolver> MakeResolver() {
    return std::make_unique<LinuxResolver>();
}

}  // namespace LinuxHost
