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
// in audit mode. The nodes come from the installed platform hooks
// (platform/host_platform.h: the simulated host answers from its state); the
// machine's own hooks have none, and every read fails, as on a host without
// these nodes.
int ZSI_Get(ZSI_Node node, void* out, std::size_t size);
