// The host's "/bin/sh" in a simulated root.
#pragma once

#include <string>
#include <string_view>

namespace Sim::Tools {

// Maps the absolute paths of a shell line into the host root, so that the
// line acts on the simulated host and never on the machine it runs on. A path
// is a word beginning with "/" outside single quotes; it is mapped when it
// names something in the root, or when its parent folder (other than the root
// itself) exists in the root. "/dev/..." and paths the root does not have
// ("/usr/bin/awk") are left alone.
std::string MapHostPaths(std::string_view line);

}  // namespace Sim::Tools
