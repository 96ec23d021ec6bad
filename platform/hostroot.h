// The host root: every absolute host path resolves against TESK_ROOT.
#pragma once

#include <string>
#include <string_view>

namespace Tesk::Platform {

// The host root directory: $TESK_ROOT, or "/" when it is unset or empty.
// Read once; SetHostRootForTesting() replaces it.
const std::string& HostRoot();

// True when the host root is not "/": the console runs against a simulated host.
bool IsSimulatedRoot();

// Resolves an absolute host path ("/etc/hosts") against the host root
// ("<root>/etc/hosts"). Device paths ("/dev/...") and relative paths are
// returned unchanged.
std::string HostPath(std::string_view path);

// Tests only: use another root (an empty string reads TESK_ROOT again).
void SetHostRootForTesting(std::string_view root);

}  // namespace Tesk::Platform
