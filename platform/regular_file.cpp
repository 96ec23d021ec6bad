// Regular files read, and logs appended to, without waiting on anything else.
#include "platform/regular_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace Tesk::Platform {

std::optional<std::string> ReadRegularFile(const std::string& path, std::string* failure,
                                           std::size_t limit) {
    auto fail = [&](std::string why) -> std::optional<std::string> {
        if (failure) *failure = std::move(why);
        return std::nullopt;
    };
    // O_NONBLOCK: opening a FIFO for reading would otherwise wait for a writer.
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (fd < 0) return fail(std::strerror(errno));
    struct stat st {};
    if (::fstat(fd, &st) != 0) {
        const int error = errno;
        ::close(fd);
        return fail(std::strerror(error));
    }
    if (!S_ISREG(st.st_mode)) {
        ::close(fd);
        return fail("not a regular file");
    }
    std::string text;
    char buffer[16384];
    for (;;) {
        const ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n > 0) {
            if (text.size() + static_cast<std::size_t>(n) > limit) {
                ::close(fd);
                return fail("larger than " + std::to_string(limit) + " bytes");
            }
            text.append(buffer, static_cast<std::size_t>(n));
        } else if (n == 0) {
            break;
        } else if (errno != EINTR) {
            const int error = errno;
            ::close(fd);
            return fail(std::strerror(error));
        }
    }
    ::close(fd);
    return text;
}

bool AppendLine(const std::string& path, const std::string& line) {
    const int fd =
        ::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0644);
    if (fd < 0) return false;
    const ssize_t written = ::write(fd, line.data(), line.size());
    ::close(fd);
    return written == static_cast<ssize_t>(line.size());
}

}  // namespace Tesk::Platform
