// Exclusive temporary file, fsync, rename.
#include "store/replace_file.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace Sim {
namespace {

[[noreturn]] void Fail(const std::string& path, int error) {
    throw std::runtime_error("cannot write " + path + ": " + std::strerror(error));
}

bool WriteAll(int fd, const std::string& text) {
    const char* data = text.data();
    size_t left = text.size();
    while (left > 0) {
        const ssize_t n = ::write(fd, data, left);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        data += n;
        left -= static_cast<size_t>(n);
    }
    return true;
}

// Makes the rename itself survive a crash of the machine.
void SyncFolder(const std::string& path) {
    const auto slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    ::fsync(fd);
    ::close(fd);
}

}  // namespace

void ReplaceFile(const std::string& path, const std::string& text, mode_t mode) {
    // mkostemp creates with O_EXCL (a link in the way is never followed) and
    // mode 0600, so the text is private until the mode below is set.
    std::string tmp = path + ".tmp.XXXXXX";
    const int fd = ::mkostemp(tmp.data(), O_CLOEXEC);
    if (fd < 0) Fail(path, errno);
    const bool written = WriteAll(fd, text) && ::fchmod(fd, mode) == 0 && ::fsync(fd) == 0;
    const int error = errno;
    if (::close(fd) != 0 || !written || ::rename(tmp.c_str(), path.c_str()) != 0) {
        const int failure = written ? errno : error;
        ::unlink(tmp.c_str());
        Fail(path, failure);
    }
    SyncFolder(path);
}

}  // namespace Sim
