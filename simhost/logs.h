// The simulated host's logs: its fixed table of log files under the host
// root, those that exist listed in table order.
#pragma once

#include "hostctl/logs.h"

namespace ZrkCtl::Logs {

class SystemLogsImpl : public HostCtl::Logs::SystemLogs {
public:
    std::vector<HostCtl::Logs::LogSource> GetLogs() const override;
    // The log file itself (its host path is its id).
    std::unique_ptr<HostCtl::Logs::PreparedLog> PrepareLog(const std::string& id) const override;
};

}  // namespace ZrkCtl::Logs
