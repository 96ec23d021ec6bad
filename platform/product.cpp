#include "platform/product.h"

#include <string>

#ifndef TESK_VERSION
#define TESK_VERSION "0.0.0"
#endif
#ifndef TESK_BUILD_NUMBER
#define TESK_BUILD_NUMBER "0"
#endif
#ifndef TESK_BUILD_TYPE
#define TESK_BUILD_TYPE "release"
#endif

namespace {
std::string g_productInfo;
bool g_preferencesReady = false;
}  // namespace

bool Preference_Init() {
    g_preferencesReady = true;
    return g_preferencesReady;
}

const char* ProductState_GetName() {
    return "TESK";
}
const char* ProductState_GetVersion() {
    return TESK_VERSION;
}
const char* ProductState_GetBuildNumber() {
    return TESK_BUILD_NUMBER;
}
const char* ProductState_GetCompilationOption() {
    return TESK_BUILD_TYPE;
}

void Log_SetProductInfo(const char* name, const char* version, const char* build,
                        const char* compilationOption) {
    g_productInfo =
        std::string(name) + " " + version + " build-" + build + " (" + compilationOption + ")";
}

const Log_CfgInterface* Log_CfgInterfaceGet() {
    static const Log_CfgInterface cfg{&ProductState_GetName, &ProductState_GetVersion};
    return &cfg;
}

bool Log_InitWithSyslogSimpleInt(const Log_CfgInterface* cfg, const char* identity) {
    return cfg != nullptr && identity != nullptr;
}

std::string Tesk::Platform::LoggedProductInfo() {
    return g_productInfo;
}
