#include "platform/zsi.h"

#include <cstdint>
#include <cstring>
#include <string>

#include "sim/state.h"

namespace {

void CopyField(char (&field)[64], const Sim::Json& from, const char* key) {
    std::string text = from.value(key, std::string());
    std::strncpy(field, text.c_str(), sizeof field - 1);
    field[sizeof field - 1] = '\0';
}

}  // namespace

int ZSI_Get(ZSI_Node node, void* out, std::size_t size) {
    if (out == nullptr) return -1;
    switch (node) {
        case ZSI_NODE_system_version: {
            if (size < sizeof(ZSI_SystemVersion) || Sim::Fault("zsi.systemVersion")) return -1;
            auto system = Sim::Get("/system");
            if (!system || !system->is_object()) return -1;
            ZSI_SystemVersion v{};
            CopyField(v.productName, *system, "productName");
            CopyField(v.productVersion, *system, "productVersion");
            CopyField(v.kernelVersion, *system, "kernelVersion");
            CopyField(v.buildNumber, *system, "buildNumber");
            std::memcpy(out, &v, sizeof v);
            return 0;
        }
        case ZSI_NODE_system_bootOption: {
            if (size < 4 || Sim::Fault("zsi.bootOption")) return -1;
            auto boot = Sim::Get("/bootOption");
            if (!boot || !boot->is_object()) return -1;
            std::uint8_t value[4] = {0, 0, 0, 0};
            value[0] = boot->value("auditMode", false) ? 1 : 0;
            std::memcpy(out, value, 4);
            return 0;
        }
    }
    return -1;
}
