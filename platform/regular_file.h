// Reading a host file that must be a plain file, and appending to a log. Host files can be anything
// a host administrator (or a fault) puts there: a FIFO would hold a plain open until some writer
// came, a device could be read for ever. These files are opened without waiting and refused unless
// they are regular files.
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

// Appends line (with its line feed) to the file at path (a real path) in one
// write, so that lines from several processes stay whole; the file is made
// when missing, and the open never waits (a FIFO without a reader fails).
// False when the file cannot be opened or the line was not written whole.
bool AppendLine(const std::string& path, const std::string& line);

}  // namespace Tesk::Platform
