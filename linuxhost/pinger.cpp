// The echo test: three ICMP echo requests over a datagram ICMP socket (what
// net.ipv4.ping_group_range allows), or a raw socket where that is refused
// and the console runs as root.
#include <netdb.h>
#include <netinet/icmp6.h>
#include <netinet/ip.h>
#include <netinet/ip_icmp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <memory>

#include "linuxhost/net_objects.h"
#include "platform/syslog.h"
#include "platform/waiting.h"

namespace LinuxHost {
namespace {

constexpr int kRequests = 3;
constexpr int kWaitMs = 1000;

struct Fd {
    int fd = -1;
    ~Fd() {
        if (fd >= 0) ::close(fd);
    }
};

// Whether packet (n bytes) is an echo reply to our id and sequence.
bool IsReply(const unsigned char* packet, ssize_t n, bool ipv6, bool raw, std::uint16_t id,
             std::uint16_t seq) {
    if (raw && !ipv6) {
        if (n < static_cast<ssize_t>(sizeof(ip))) return false;
        const std::size_t header = (packet[0] & 0x0f) * 4u;
        packet += header;
        n -= static_cast<ssize_t>(header);
    }
    if (n < 8) return false;
    const std::uint8_t reply = ipv6 ? ICMP6_ECHO_REPLY : ICMP_ECHOREPLY;
    std::uint16_t gotId, gotSeq;
    std::memcpy(&gotId, packet + 4, 2);
    std::memcpy(&gotSeq, packet + 6, 2);
    // A datagram socket's id is the kernel's (it filters by it itself).
    return packet[0] == reply && (!raw || gotId == htons(id)) && gotSeq == htons(seq);
}

std::uint16_t Checksum(const unsigned char* data, std::size_t n) {
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i + 1 < n; i += 2)
        sum += static_cast<std::uint32_t>(data[i] << 8 | data[i + 1]);
    if (n % 2 != 0) sum += static_cast<std::uint32_t>(data[n - 1] << 8);
    while (sum >> 16) sum = (sum & 0xffff) + (sum >> 16);
    return htons(static_cast<std::uint16_t>(~sum));
}

// Waits for the reply to one request; false on time-out or a quit.
bool AwaitReply(int fd, bool ipv6, bool raw, std::uint16_t id, std::uint16_t seq) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kWaitMs);
    while (Tesk::Platform::WaitForInput(fd, end)) {
        unsigned char packet[1500];
        const ssize_t n = ::recv(fd, packet, sizeof packet, 0);
        if (n > 0 && IsReply(packet, n, ipv6, raw, id, seq)) return true;
    }
    return false;
}

class LinuxPinger : public HostCtl::Network::Pinger {
public:
    bool Ping(const std::string& target) const override {
        addrinfo hints{};
        hints.ai_flags = AI_NUMERICHOST;
        hints.ai_socktype = SOCK_DGRAM;
        addrinfo* found = nullptr;
        if (::getaddrinfo(target.c_str(), nullptr, &hints, &found) != 0 || found == nullptr) {
            Tesk::Platform::Log(LOG_WARNING, "Ping: %s is no address", target.c_str());
            return false;
        }
        std::unique_ptr<addrinfo, void (*)(addrinfo*)> address(found, ::freeaddrinfo);
        const bool ipv6 = found->ai_family == AF_INET6;
        const int protocol =
            ipv6 ? static_cast<int>(IPPROTO_ICMPV6) : static_cast<int>(IPPROTO_ICMP);
        Fd sock{::socket(found->ai_family, SOCK_DGRAM | SOCK_CLOEXEC, protocol)};
        bool raw = false;
        if (sock.fd < 0) {
            sock.fd = ::socket(found->ai_family, SOCK_RAW | SOCK_CLOEXEC, protocol);
            raw = true;
        }
        if (sock.fd < 0) {
            Tesk::Platform::Log(LOG_ERR, "Ping %s could not run: %s", target.c_str(),
                                std::strerror(errno));
            return false;
        }
        const auto id = static_cast<std::uint16_t>(::getpid());
        int answered = 0;
        for (int seq = 1; seq <= kRequests && !Tesk::Platform::QuitRequested(); ++seq) {
            unsigned char request[16] = {};
            request[0] = ipv6 ? ICMP6_ECHO_REQUEST : ICMP_ECHO;
            const std::uint16_t netId = htons(id), netSeq = htons(static_cast<std::uint16_t>(seq));
            std::memcpy(request + 4, &netId, 2);
            std::memcpy(request + 6, &netSeq, 2);
            // The kernel sums ICMPv6 itself, and datagram sockets' too.
            if (!ipv6) {
                const std::uint16_t sum = Checksum(request, sizeof request);
                std::memcpy(request + 2, &sum, 2);
            }
            // A request the kernel cannot send yet (the address or route is
            // still being set up) goes unanswered for its usual wait, as on
            // a wire that drops it.
            if (::sendto(sock.fd, request, sizeof request, 0, found->ai_addr, found->ai_addrlen) <
                0) {
                Tesk::Platform::PauseUnlessQuit(std::chrono::milliseconds(kWaitMs));
                continue;
            }
            if (AwaitReply(sock.fd, ipv6, raw, id, static_cast<std::uint16_t>(seq))) ++answered;
        }
        Tesk::Platform::Log(LOG_INFO, "Ping %s: %d of %d answered", target.c_str(), answered,
                            kRequests);
        return answered > 0;
    }
};

}  // namespace

std::unique_ptr<HostCtl::Network::Pinger> MakePinger() {
    return std::make_unique<LinuxPinger>();
}

}  // namespace LinuxHost
