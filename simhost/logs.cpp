#include "simhost/logs.h"

#include <sys/stat.h>

#include "hostctl/exception.h"
#include "platform/hostroot.h"

namespace ZrkCtl::Logs {
namespace {

struct LogFile {
    const char* title;
    const char* path;  // host path
};

constexpr LogFile kLogTable[] = {{"Syslog", "/var/log/syslog.log"},
                                 {"Zerkel", "/var/log/zerkel.log"},
                                 {"Config", "/var/log/sysboot.log"},
                                 {"Management Agent (hagentd)", "/var/log/hagentd.log"},
                                 {"Centrix Agent (mgra)", "/var/log/mgra.log"},
                                 {"High Availibility Agent (hamon)", "/var/log/hamon.log"},
                                 {"Brelt Kovix Observation log (noxd)", "/var/log/noxd.log"}};

bool Exists(const char* path) {
    struct stat st {};
    return ::stat(Tesk::Platform::HostPath(path).c_str(), &st) == 0;
}

}  // namespace

std::vector<HostCtl::Logs::LogSource> SystemLogsImpl::GetLogs() const {
    std::vector<HostCtl::Logs::LogSource> available;
    for (const auto& log : kLogTable)
        if (Exists(log.path)) available.push_back({log.title, log.path});
    return available;
}

std::unique_ptr<HostCtl::Logs::PreparedLog> SystemLogsImpl::PrepareLog(
    const std::string& id) const {
    for (const auto& log : kLogTable)
        if (id == log.path) return std::make_unique<HostCtl::Logs::LogFileInPlace>(id);
    throw HostCtl::Lib::HostCtlException("No log " + id + " on this host");
}

}  // namespace ZrkCtl::Logs
