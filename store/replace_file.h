// Replacing a file of the host root as one step, without ever following a
// link planted in the root: the new text goes to a temporary file made
// exclusively beside the target (a name nobody can predict), is synced, given
// its mode and renamed over the target. A reader sees the old file or the new
// one, never a part; the target's own name is replaced, never a file it links
// to.
#pragma once

#include <sys/types.h>

#include <string>

namespace Sim {

// Replaces path with text, readable as mode says (0600 for a file that holds
// secrets). Throws std::runtime_error naming path when a step fails; the
// temporary file is then gone and path is as it was.
void ReplaceFile(const std::string& path, const std::string& text, mode_t mode);

}  // namespace Sim
