// The welcome screen's watch on the kernel's network: a netlink socket in the
// groups of link, address and route changes. It only wakes the console when
// the kernel sends something.
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "hostctl/exception.h"
#include "linuxhost/netlink.h"
#include "platform/syslog.h"

namespace LinuxHost {
namespace {

class NetlinkWatch : public HostCtl::HostWatch {
public:
    explicit NetlinkWatch(int fd) : fd_(fd) {}
    ~NetlinkWatch() override { ::close(fd_); }
    int Descriptor() const override { return fd_; }
    void Drain() override {
        char buffer[16384];
        // A full receive queue (ENOBUFS) only means that much changed.
        while (::recv(fd_, buffer, sizeof buffer, MSG_DONTWAIT) > 0 || errno == ENOBUFS) {
        }
    }

private:
    int fd_;
};

}  // namespace

std::unique_ptr<HostCtl::HostWatch> WatchNetwork() {
    const int fd = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE);
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV6_IFADDR | RTMGRP_IPV4_ROUTE |
                        RTMGRP_IPV6_ROUTE;
    if (fd < 0 || ::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        const std::string text =
            std::string("Watching the kernel's network failed: ") + std::strerror(errno);
        if (fd >= 0) ::close(fd);
        Tesk::Platform::Log(LOG_ERR, "%s", text.c_str());
        throw HostCtl::Lib::HostCtlException(text);
    }
    return std::make_unique<NetlinkWatch>(fd);
}

}  // namespace LinuxHost
