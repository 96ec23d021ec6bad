// The system-information nodes, answered by the installed provider.
#include "platform/zsi.h"

namespace {

Tesk::Platform::ZsiProvider g_provider = nullptr;

}  // namespace

int ZSI_Get(ZSI_Node node, void* out, std::size_t size) {
    if (out == nullptr || g_provider == nullptr) return -1;
    return g_provider(node, out, size);
}

void Tesk::Platform::SetZsiProvider(ZsiProvider provider) {
    g_provider = provider;
}
