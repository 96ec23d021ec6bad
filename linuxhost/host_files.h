// Reading the host's own text files (os-release, DMI, cpuinfo, the keyboard
// configuration) under the host root, and the shell-style KEY=value lines
// that several of them use.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace LinuxHost {

// The text of the host file at path (a host path, resolved against the host
// root). None when it is missing (silently) or cannot be read (logged). A
// file under /proc that a host root other than "/" does not have is read from
// the running kernel's /proc: a fixture root may stand in for the kernel's
// facts, the lab leaves them to the kernel it runs on.
std::optional<std::string> ReadHostFile(std::string_view path);

// The first line of the host file, trimmed of white space at both ends; empty
// when the file is missing or empty.
std::string ReadHostLine(std::string_view path);

// The KEY=value assignments of a shell-style file (os-release,
// /etc/default/keyboard): one per line, the value unquoted ("..." and '...')
// with the backslash escapes of "..." undone. Comments and other lines are
// left out.
std::map<std::string, std::string> ParseShellAssignments(std::string_view text);

// text with the assignment of key set to value (quoted), in place of its old
// line, or appended when it had none; every other line is kept as it was.
std::string SetShellAssignment(std::string_view text, std::string_view key, std::string_view value);

}  // namespace LinuxHost
