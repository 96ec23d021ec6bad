// The kernel's system-information nodes.
#pragma once

#include <cstddef>

enum ZSI_Node {
    ZSI_NODE_system_version,
    ZSI_NODE_system_bootOption,
};

// The system-version node: four NUL-terminated text fields.
struct ZSI_SystemVersion {
    char productName[64];
    char productVersion[64];
    char kernelVersion[64];
    char buildNumber[64];
};

// Reads a node into out (size bytes). 0 on success, -1 when the node cannot be
// read (or does not fit). The boot-option node is 4 bytes; its first byte is 1
// in audit mode. The nodes come from the provider the host backend installed
// (the simulated host answers from its state); without one every read fails,
// as on a host without these nodes.
int ZSI_Get(ZSI_Node node, void* out, std::size_t size);

namespace Tesk::Platform {

// Answers ZSI_Get; same contract.
using ZsiProvider = int (*)(ZSI_Node node, void* out, std::size_t size);

// Installs the provider (null: none).
void SetZsiProvider(ZsiProvider provider);

}  // namespace Tesk::Platform
