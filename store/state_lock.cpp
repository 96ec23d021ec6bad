// The state file's flock.
#include "store/state_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

namespace Sim {

StateLock::StateLock(const std::string& statePath, Mode mode) {
    std::string path = statePath + ".lock";
    // O_NONBLOCK: a FIFO put in place of the lock file must not hold the open.
    fd_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0644);
    if (fd_ < 0) return;
    const int operation = mode == Mode::Shared ? LOCK_SH : LOCK_EX;
    while (::flock(fd_, operation) != 0 && errno == EINTR) {
    }
}

StateLock::~StateLock() {
    if (fd_ >= 0) ::close(fd_);
}

}  // namespace Sim
