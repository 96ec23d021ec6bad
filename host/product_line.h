// The product line the host's system-version node gives: "<product>
// <version> (Zerkel <kernel version> Build <build>)".
#pragma once

#include <string>

namespace Tesk {

// Empty while the node cannot be read.
std::string ReadProductLine();

}  // namespace Tesk
