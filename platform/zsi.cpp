// The system-information nodes, answered by the installed platform hooks.
#include "platform/zsi.h"

#include "platform/host_platform.h"

int ZSI_Get(ZSI_Node node, void* out, std::size_t size) {
    if (out == nullptr) return -1;
    return Tesk::Platform::TheHostPlatform().ReadSystemNode(node, out, size);
}

// The machine offers no such nodes.
int Tesk::Platform::HostPlatform::ReadSystemNode(ZSI_Node, void*, std::size_t) const {
    return -1;
}
