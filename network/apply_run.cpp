// The guard every group of host calls of the apply procedure runs under.
#include <cstring>

#include "hostctl/exception.h"
#include "network/apply_steps.h"
#include "platform/syslog.h"
#include "ui/dialog.h"
#include "ui/markup_escape.h"
#include "ui/string_ids.h"
#include "ui/strings.h"

namespace Tesk {

bool ApplyRun::Guard(const char* prefix, const std::function<void()>& step) {
    try {
        step();
        return true;
    } catch (const HostCtl::Lib::HostCtlException& e) {
        std::string message = prefix;
        if (auto at = message.find("%s"); at != std::string::npos)
            message.replace(at, 2, e.what());
        else
            message += e.what();
        Platform::Log(LOG_ERR, "%s", message.c_str());
        MessageDialog error(opener, Str(StrId::EnableManagementNetworkError),
                            EscapeHostText(message));
        Run(error);
        return false;
    }
}

}  // namespace Tesk
