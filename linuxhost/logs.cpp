#include "linuxhost/logs.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "hostctl/exception.h"
#include "linuxhost/journal.h"
#include "platform/hostroot.h"
#include "platform/syslog.h"

namespace LinuxHost {

const std::vector<JournalGroup> kJournalGroups = {
    {"journal:all", "Journal: the whole host", {}},
    {"journal:console", "Journal: this console", {"SYSLOG_IDENTIFIER=TESK"}},
    {"journal:machines",
     "Journal: virtual machines (libvirt)",
     {"_SYSTEMD_UNIT=libvirtd.service", "_SYSTEMD_UNIT=virtqemud.service",
      "_SYSTEMD_UNIT=virtlogd.service"}},
    {"journal:network",
     "Journal: network (systemd-networkd)",
     {"_SYSTEMD_UNIT=systemd-networkd.service", "_SYSTEMD_UNIT=systemd-resolved.service"}},
    {"journal:access",
     "Journal: logins and SSH",
     {"_SYSTEMD_UNIT=ssh.service", "_SYSTEMD_UNIT=systemd-logind.service"}},
    {"journal:kernel", "Journal: kernel", {"_TRANSPORT=kernel"}},
};

namespace {

using HostCtl::Lib::HostCtlException;

struct LogFile {
    const char* title;
    const char* path;
};
constexpr LogFile kLogFiles[] = {
    {"Syslog (/var/log/syslog)", "/var/log/syslog"},
    {"Messages (/var/log/messages)", "/var/log/messages"},
    {"Kernel (/var/log/kern.log)", "/var/log/kern.log"},
    {"Logins (/var/log/auth.log)", "/var/log/auth.log"},
    {"libvirt (/var/log/libvirt/libvirtd.log)", "/var/log/libvirt/libvirtd.log"},
};

constexpr const char kExportDirectory[] = "/run/tesk";

bool IsRegularFile(const char* hostPath) {
    struct stat st {};
    return ::stat(Tesk::Platform::HostPath(hostPath).c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

// A journal group written out for the pager, removed with the object.
class ExportedLog : public HostCtl::Logs::PreparedLog {
public:
    ExportedLog(std::string hostPath) : hostPath_(std::move(hostPath)) {}
    ~ExportedLog() override { ::unlink(Tesk::Platform::HostPath(hostPath_).c_str()); }
    const std::string& HostPath() const override { return hostPath_; }

private:
    std::string hostPath_;
};

std::unique_ptr<HostCtl::Logs::PreparedLog> Export(const std::string& text) {
    const std::string directory = Tesk::Platform::HostPath(kExportDirectory);
    std::error_code ignored;  // a missing folder fails mkstemp below
    std::filesystem::create_directories(std::filesystem::path(directory).parent_path(), ignored);
    ::mkdir(directory.c_str(), 0700);
    std::string path = Tesk::Platform::HostPath(std::string(kExportDirectory) + "/journal-XXXXXX");
    const int fd = ::mkstemp(path.data());
    if (fd < 0)
        throw HostCtlException(std::string("The journal cannot be written out to ") +
                               kExportDirectory + ": " + std::strerror(errno));
    const std::string hostPath =
        std::string(kExportDirectory) + path.substr(path.find_last_of('/'));
    auto log = std::make_unique<ExportedLog>(hostPath);
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t n = ::write(fd, text.data() + done, text.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) {
            const int error = errno;
            ::close(fd);
            throw HostCtlException(std::string("Writing out the journal failed: ") +
                                   std::strerror(error));
        }
        done += static_cast<std::size_t>(n);
    }
    ::close(fd);
    return log;
}

}  // namespace

std::vector<HostCtl::Logs::LogSource> SystemLogsImpl::GetLogs() const {
    std::vector<HostCtl::Logs::LogSource> logs;
    if (Journal::Present())
        for (const auto& group : kJournalGroups) logs.push_back({group.title, group.id});
    for (const auto& file : kLogFiles)
        if (IsRegularFile(file.path)) logs.push_back({file.title, file.path});
    return logs;
}

std::unique_ptr<HostCtl::Logs::PreparedLog> SystemLogsImpl::PrepareLog(
    const std::string& id) const {
    for (const auto& group : kJournalGroups) {
        if (id != group.id) continue;
        const std::vector<std::string> matches(group.matches.begin(), group.matches.end());
        std::string text = Journal::Lines(matches, kJournalLimit);
        if (text.empty()) text = "(no entries)\n";
        return Export(text);
    }
    for (const auto& file : kLogFiles)
        if (id == file.path) return std::make_unique<HostCtl::Logs::LogFileInPlace>(id);
    throw HostCtlException("No log " + id + " on this host");
}

}  // namespace LinuxHost
