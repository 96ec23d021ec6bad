// The simulated host's lockdown mode: the management tool's queries and its
// enter and exit commands, run as the console's service account.
#include "simhost/lockdown.h"

#include <string>
#include <string_view>

#include "host/runner.h"
#include "hostctl/exception.h"
#include "simhost/tool_limits.h"

namespace ZrkCtl::Lockdown {

bool LockdownModeImpl::IsEnabled() const {
    return Tesk::RuxCmdGet("ruxsvc/auth/lockdown_is_enabled",
                           Sim::ToolLimit(Tesk::ToolJob::LockdownQuery));
}

bool LockdownModeImpl::IsPossible() const {
    return Tesk::RuxCmdGet("ruxsvc/auth/lockdown_is_possible",
                           Sim::ToolLimit(Tesk::ToolJob::LockdownQuery));
}

void LockdownModeImpl::SetEnabled(bool enabled) const {
    const char* command =
        enabled ? "ruxsvc/auth/lockdown_mode_enter" : "ruxsvc/auth/lockdown_mode_exit";
    const char* argv[] = {"rux-cmd", "-U", Tesk::kServiceAccount, command, nullptr};
    char output[Tesk::kCaptureBufferSize] = {};
    char error[Tesk::kCaptureBufferSize] = {};
    int outputLength = Tesk::kCaptureCapacity;
    int errorLength = Tesk::kCaptureCapacity;
    const Tesk::CommandOutcome outcome =
        Tesk::RunCommandDetailed("/bin/rux-cmd", argv, output, &outputLength, error, &errorLength,
                                 nullptr, 0, Sim::ToolLimit(Tesk::ToolJob::LockdownChange));
    if (outcome.result() == 0) return;
    std::string text =
        Tesk::CollapseWhitespace(std::string_view(error, errorLength > 0 ? errorLength : 0));
    // A tool that said nothing: how it ended is the error.
    if (text.empty()) text = outcome.describe();
    throw HostCtl::Lib::HostCtlException(text);
}

}  // namespace ZrkCtl::Lockdown
