// The simulated host's configuration through its own tools: "backup.sh 0",
// "factoryConfig.py" through the shell, and "kovacli software vib list
// --custom", with the tools' own argument vectors and time limits.
#include "simhost/configuration.h"

#include <string_view>

#include "host/runner.h"
#include "simhost/tool_limits.h"

namespace ZrkCtl::Configuration {

bool HostConfigurationImpl::Backup() const {
    const char* argv[] = {"backup.sh", "0", nullptr};
    return Tesk::RunCommandLogged("/sbin/backup.sh", argv,
                                  Sim::ToolLimit(Tesk::ToolJob::ConfigurationBackup)) == 0;
}

bool HostConfigurationImpl::ResetToFactoryDefaults() const {
    return Tesk::RunShellCommand("/sbin/factoryConfig.py --reset-only > /dev/null 2>&1",
                                 Sim::ToolLimit(Tesk::ToolJob::ConfigurationReset)) == 0;
}

// True when the tool names at least one extension.
bool HostConfigurationImpl::HasCustomExtensions() const {
    const char* argv[] = {"kovacli", "software", "vib", "list", "--custom", nullptr};
    char out[Tesk::kCaptureBufferSize] = {};
    int length = Tesk::kCaptureCapacity;
    if (Tesk::RunCommand("/bin/kovacli", argv, out, &length, nullptr, nullptr, nullptr, 0,
                         Sim::ToolLimit(Tesk::ToolJob::CustomExtensionsCheck)) != 0)
        return false;
    const std::string_view text(out, length > 0 ? length : 0);
    return text.find_first_not_of(" \t\r\n") != std::string_view::npos;
}

bool HostConfigurationImpl::RemoveCustomExtensions() const {
    return Tesk::RunShellCommand(
               "/sbin/factoryConfig.py --remove-custom-extensions > /dev/null 2>&1",
               Sim::ToolLimit(Tesk::ToolJob::ConfigurationReset)) == 0;
}

}  // namespace ZrkCtl::Configuration
