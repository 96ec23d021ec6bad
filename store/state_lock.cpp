// The state file's flock.
#include "store/state_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace Sim {

StateLock::StateLock(const std::string& statePath, Mode mode) {
    const std::string path = statePath + ".lock";
    // O_NONBLOCK: a FIFO put in place of the lock file must not hold the open;
    // O_NOFOLLOW: a link in its place is refused, never followed out of the root.
    fd_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW,
                 0644);
    if (fd_ < 0 && (errno == ENOENT || errno == ENOTDIR)) return;
    struct stat st {};
    if (fd_ < 0 && errno != ELOOP && errno != EISDIR)
        throw std::runtime_error("simulated host state cannot be locked: " + path + ": " +
                                 std::strerror(errno));
    if (fd_ < 0 || ::fstat(fd_, &st) != 0 || !S_ISREG(st.st_mode)) {
        if (fd_ >= 0) ::close(fd_);
        fd_ = -1;
        throw std::runtime_error("simulated host state is not a regular file: " + path);
    }
    const int operation = mode == Mode::Shared ? LOCK_SH : LOCK_EX;
    while (::flock(fd_, operation) != 0 && errno == EINTR) {
    }
}

StateLock::~StateLock() {
    if (fd_ >= 0) ::close(fd_);
}

}  // namespace Sim
