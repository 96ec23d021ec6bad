#include "linuxhost/journal.h"

#include <systemd/sd-journal.h>

#include <cstring>
#include <ctime>
#include <filesystem>
#include <memory>

#include "hostctl/exception.h"
#include "linuxhost/lazy_library.h"
#include "platform/hostroot.h"

namespace LinuxHost::Journal {
namespace {

using HostCtl::Lib::HostCtlException;

constexpr const char* kDirectories[] = {"/var/log/journal", "/run/log/journal"};

struct JournalCloser {
    void operator()(sd_journal* journal) const {
        TESK_LAZY(kLibsystemd, sd_journal_close)(journal);
    }
};
using JournalHandle = std::unique_ptr<sd_journal, JournalCloser>;

[[noreturn]] void Fail(const char* step, int r) {
    throw HostCtlException(std::string("Reading the journal failed (") + step +
                           "): " + std::strerror(-r));
}

JournalHandle Open() {
    const auto open = TESK_LAZY(kLibsystemd, sd_journal_open);
    const auto openDirectory = TESK_LAZY(kLibsystemd, sd_journal_open_directory);
    if (open == nullptr || openDirectory == nullptr ||
        TESK_LAZY(kLibsystemd, sd_journal_close) == nullptr)
        throw HostCtlException("The journal cannot be read: libsystemd is missing");
    sd_journal* journal = nullptr;
    int r = -ENOENT;
    if (!Tesk::Platform::IsSimulatedRoot()) {
        r = open(&journal, SD_JOURNAL_LOCAL_ONLY);
    } else {
        for (const char* directory : kDirectories) {
            std::error_code error;
            const std::string path = Tesk::Platform::HostPath(directory);
            if (!std::filesystem::is_directory(path, error)) continue;
            r = openDirectory(&journal, path.c_str(), 0);
            break;
        }
    }
    if (r < 0) Fail("open", r);
    return JournalHandle(journal);
}

// The value of field in the current entry; empty when it has none.
std::string Field(sd_journal* journal, const char* field) {
    const void* data = nullptr;
    size_t length = 0;
    if (TESK_LAZY(kLibsystemd, sd_journal_get_data)(journal, field, &data, &length) < 0) return {};
    const std::size_t prefix = std::strlen(field) + 1;  // "FIELD="
    if (length < prefix) return {};
    return std::string(static_cast<const char*>(data) + prefix, length - prefix);
}

std::string Line(sd_journal* journal) {
    uint64_t usec = 0;
    TESK_LAZY(kLibsystemd, sd_journal_get_realtime_usec)(journal, &usec);
    const std::time_t seconds = static_cast<std::time_t>(usec / 1000000);
    std::tm local{};
    char stamp[32] = "";
    if (localtime_r(&seconds, &local) != nullptr)
        std::strftime(stamp, sizeof stamp, "%b %d %H:%M:%S", &local);
    std::string identifier = Field(journal, "SYSLOG_IDENTIFIER");
    if (identifier.empty()) identifier = Field(journal, "_COMM");
    if (identifier.empty() && Field(journal, "_TRANSPORT") == "kernel") identifier = "kernel";
    const std::string pid = Field(journal, "_PID");
    std::string line = std::string(stamp) + " " + Field(journal, "_HOSTNAME") + " " + identifier;
    if (!pid.empty()) line += "[" + pid + "]";
    std::string message = Field(journal, "MESSAGE");
    for (auto& c : message)
        if (c == '\n') c = ' ';
    return line + ": " + message + "\n";
}

}  // namespace

bool Present() {
    for (const char* directory : kDirectories) {
        std::error_code error;
        if (std::filesystem::is_directory(Tesk::Platform::HostPath(directory), error)) return true;
    }
    return false;
}

std::string Lines(const std::vector<std::string>& matches, int limit) {
    const JournalHandle journal = Open();
    const auto addMatch = TESK_LAZY(kLibsystemd, sd_journal_add_match);
    const auto seekTail = TESK_LAZY(kLibsystemd, sd_journal_seek_tail);
    const auto previousSkip = TESK_LAZY(kLibsystemd, sd_journal_previous_skip);
    const auto next = TESK_LAZY(kLibsystemd, sd_journal_next);
    if (addMatch == nullptr || seekTail == nullptr || previousSkip == nullptr || next == nullptr ||
        TESK_LAZY(kLibsystemd, sd_journal_get_data) == nullptr ||
        TESK_LAZY(kLibsystemd, sd_journal_get_realtime_usec) == nullptr)
        throw HostCtlException("The journal cannot be read: libsystemd is incomplete");
    // Matches on the same field are alternatives.
    for (const auto& match : matches) {
        const int r = addMatch(journal.get(), match.data(), match.size());
        if (r < 0) Fail("match", r);
    }
    int r = seekTail(journal.get());
    if (r < 0) Fail("seek", r);
    r = previousSkip(journal.get(), static_cast<uint64_t>(limit));
    if (r < 0) Fail("seek", r);
    std::string text;
    if (r == 0) return text;
    do {
        text += Line(journal.get());
    } while ((r = next(journal.get())) > 0);
    if (r < 0) Fail("read", r);
    return text;
}

}  // namespace LinuxHost::Journal
