// Reading the host's journal (sd-journal, libsystemd opened at first use).
// On the machine's own root it is the local journal; under another host root
// the journal files kept in <root>/var/log/journal (or <root>/run/log/journal).
#pragma once

#include <string>
#include <vector>

namespace LinuxHost::Journal {

// Whether the host keeps a journal at all (one of its directories exists).
bool Present();

// The last `limit` entries that match any of `matches` ("FIELD=value"; none:
// every entry), oldest first, one line each as the system log shows them:
// "Nov 24 08:00:01 host identifier[pid]: message". Throws
// HostCtl::Lib::HostCtlException when the journal cannot be opened or read.
std::string Lines(const std::vector<std::string>& matches, int limit);

}  // namespace LinuxHost::Journal
