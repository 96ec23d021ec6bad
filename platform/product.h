// Preferences, product state and the logging library's set-up calls.
#pragma once

#include <string>

// Loads the host's preferences. The console keeps no preferences of its own;
// this only marks the library as ready.
bool Preference_Init();

// Product state: the console's own product name, version, build number and
// compilation option (the build type).
const char* ProductState_GetName();
const char* ProductState_GetVersion();
const char* ProductState_GetBuildNumber();
const char* ProductState_GetCompilationOption();

// The logging library: product information for its first lines, its
// configuration interface, and its start on top of syslog.
struct Log_CfgInterface {
    const char* (*productName)();
    const char* (*productVersion)();
};
void Log_SetProductInfo(const char* name, const char* version, const char* build,
                        const char* compilationOption);
const Log_CfgInterface* Log_CfgInterfaceGet();
bool Log_InitWithSyslogSimpleInt(const Log_CfgInterface* cfg, const char* identity);

namespace Tesk::Platform {
// What Log_SetProductInfo was handed, as "<name> <version> build-<build> (<option>)".
std::string LoggedProductInfo();
}  // namespace Tesk::Platform
