#include "host/product_line.h"

#include <cstdio>

#include "platform/zsi.h"

namespace Tesk {

std::string ReadProductLine() {
    ZSI_SystemVersion v{};
    if (ZSI_Get(ZSI_NODE_system_version, &v, sizeof v) != 0) return {};
    char buffer[sizeof v + 32];
    std::snprintf(buffer, sizeof buffer, "%s %s (Zerkel %s Build %s)", v.productName,
                  v.productVersion, v.kernelVersion, v.buildNumber);
    return buffer;
}

}  // namespace Tesk
