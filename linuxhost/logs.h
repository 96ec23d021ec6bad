// "View System Logs" on a Linux host: the journal, one entry per group of
// units (kJournalGroups), then the plain log files the host keeps
// (kLogFiles) where they exist. A journal entry is written out for the pager
// to /run/tesk under the host root and removed when the pager is done.
#pragma once

#include <vector>

#include "hostctl/logs.h"

namespace LinuxHost {

struct JournalGroup {
    const char* id;
    const char* title;
    std::vector<const char*> matches;  // "FIELD=value", any of them; none: all
};
extern const std::vector<JournalGroup> kJournalGroups;

// How many of the newest entries a journal entry shows.
inline constexpr int kJournalLimit = 20000;

class SystemLogsImpl : public HostCtl::Logs::SystemLogs {
public:
    std::vector<HostCtl::Logs::LogSource> GetLogs() const override;
    std::unique_ptr<HostCtl::Logs::PreparedLog> PrepareLog(const std::string& id) const override;
};

}  // namespace LinuxHost
