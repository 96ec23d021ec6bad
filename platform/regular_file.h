// Reading a host file that must be a plain file. Host files can be anything a
// host administrator (or a fault) puts there: a FIFO would hold a plain open
// until some writer came, a device could be read for ever. These files are
// opened without waiting and refused unless they are regular files.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace Tesk::Platform {

// The whole text of the regular file at path (a real path: callers resolve
// host paths first), at most `limit` bytes. None when the file is missing,
// is not a regular file, cannot be read or is larger than the limit; then
// *failure (when given) says why: "not a regular file", "larger than N
// bytes", or the system's error text.
std::optional<std::string> ReadRegularFile(const std::string& path, std::string* failure = nullptr,
                                           std::size_t limit = 16 * 1024 * 1024);

}  // namespace Tesk::Platform
