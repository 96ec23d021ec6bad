#include "simhost/state_watch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "platform/syslog.h"
#include "store/state.h"

namespace ZrkCtl {
namespace {

class StateWatch : public HostCtl::HostWatch {
public:
    explicit StateWatch(int fd) : fd_(fd) {}
    ~StateWatch() override { ::close(fd_); }
    int Descriptor() const override { return fd_; }
    void Drain() override {
        alignas(inotify_event) char buffer[4096];
        while (::read(fd_, buffer, sizeof buffer) > 0) {
        }
    }

private:
    int fd_;
};

}  // namespace

std::unique_ptr<HostCtl::HostWatch> WatchState() {
    const std::string path = Sim::StatePath();
    const std::string folder = path.substr(0, path.rfind('/'));
    const int fd = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (fd < 0 || ::inotify_add_watch(fd, folder.c_str(), IN_MOVED_TO | IN_CLOSE_WRITE) < 0) {
        Tesk::Platform::Log(LOG_ERR, "Watching %s failed: %s", folder.c_str(),
                            std::strerror(errno));
        if (fd >= 0) ::close(fd);
        return nullptr;
    }
    return std::make_unique<StateWatch>(fd);
}

}  // namespace ZrkCtl
