// The record file holds a few header lines and then the kept files:
//   kind managementNetwork
//   owner 1234
//   revertAt 0
//   file /etc/hostname 9
//   <9 bytes>
//   absent /etc/resolv.conf
// "ours <dir> <prefix>" names a folder whose files with that prefix are all
// ours: the kept ones come back and any other is removed.
#include "linuxhost/change_record.h"

#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <vector>

#include "hostctl/exception.h"
#include "linuxhost/management.h"
#include "linuxhost/networkd_trial.h"
#include "platform/hostroot.h"
#include "platform/regular_file.h"
#include "platform/syslog.h"
#include "store/replace_file.h"

namespace LinuxHost {
namespace {

using HostCtl::Changes::ChangeKind;
using HostCtl::Lib::HostCtlException;
using Tesk::Platform::HostPath;

struct KindName {
    ChangeKind kind;
    const char* name;
};
constexpr KindName kKinds[] = {
    {ChangeKind::ManagementNetwork, "managementNetwork"},
    {ChangeKind::FactoryNetworkRestore, "factoryNetworkRestore"},
    {ChangeKind::StandardSwitchRestore, "standardSwitchRestore"},
    {ChangeKind::AgentsRestart, "agentsRestart"},
};

const char* NameOf(ChangeKind kind) {
    for (const auto& k : kKinds)
        if (k.kind == kind) return k.name;
    return "managementNetwork";
}

struct KeptFile {
    std::string path;                 // a host path
    std::optional<std::string> text;  // none: the file was not there
};

struct Record {
    ChangeKind kind = ChangeKind::ManagementNetwork;
    int owner = 0;
    std::int64_t revertAt = 0;
    bool ours = false;  // our networkd files are kept
    std::vector<KeptFile> files;
};

bool IsNetworkKind(ChangeKind kind) {
    return kind != ChangeKind::AgentsRestart;
}

KeptFile Keep(const std::string& path) {
    struct stat st {};
    const std::string real = HostPath(path);
    if (::lstat(real.c_str(), &st) != 0) {
        if (errno == ENOENT) return {path, std::nullopt};
        throw HostCtlException("Cannot read " + path + ": " + std::strerror(errno));
    }
    std::string why;
    auto text = Tesk::Platform::ReadRegularFile(real, &why, 1024 * 1024);
    if (!S_ISREG(st.st_mode) || !text) throw HostCtlException("Cannot keep " + path + ": " + why);
    return {path, std::move(*text)};
}

std::string Render(const Record& record) {
    std::string out = std::string("kind ") + NameOf(record.kind) + "\nowner " +
                      std::to_string(record.owner) + "\nrevertAt " +
                      std::to_string(record.revertAt) + "\n";
    if (record.ours) out += std::string("ours ") + kNetworkdDir + " " + kOurFilePrefix + "\n";
    for (const auto& file : record.files) {
        if (!file.text) {
            out += "absent " + file.path + "\n";
            continue;
        }
        out += "file " + file.path + " " + std::to_string(file.text->size()) + "\n" + *file.text +
               "\n";
    }
    return out;
}

std::optional<Record> Load() {
    std::string why;
    const std::string real = HostPath(kChangeRecordFile);
    auto text = Tesk::Platform::ReadRegularFile(real, &why);
    if (!text) {
        struct stat st {};
        if (::lstat(real.c_str(), &st) != 0 && errno == ENOENT) return std::nullopt;
        throw HostCtlException(std::string("Cannot read ") + kChangeRecordFile + ": " + why);
    }
    Record record;
    std::size_t at = 0;
    auto bad = [] { return HostCtlException(std::string(kChangeRecordFile) + " is damaged"); };
    while (at < text->size()) {
        const std::size_t end = text->find('\n', at);
        if (end == std::string::npos) throw bad();
        std::istringstream line(text->substr(at, end - at));
        at = end + 1;
        std::string word;
        line >> word;
        if (word == "kind") {
            std::string name;
            line >> name;
            for (const auto& k : kKinds)
                if (name == k.name) record.kind = k.kind;
        } else if (word == "owner") {
            line >> record.owner;
        } else if (word == "revertAt") {
            line >> record.revertAt;
        } else if (word == "ours") {
            record.ours = true;
        } else if (word == "absent") {
            std::string path;
            line >> path;
            record.files.push_back({path, std::nullopt});
        } else if (word == "file") {
            std::string path;
            std::size_t size = 0;
            if (!(line >> path >> size) || at + size + 1 > text->size()) throw bad();
            record.files.push_back({path, text->substr(at, size)});
            at += size + 1;
        } else {
            throw bad();
        }
        if (line.fail()) throw bad();
    }
    return record;
}

void Save(const Record& record) {
    const std::string real = HostPath(kChangeRecordFile);
    try {
        // A host root need not have /var/lib yet.
        std::error_code ignored;
        std::filesystem::create_directories(HostPath("/var/lib/tesk"), ignored);
        Sim::ReplaceFile(real, Render(record), 0600);
    } catch (const std::exception& error) {
        throw HostCtlException(std::string("Cannot record the change: ") + error.what());
    }
}

void Restore(const KeptFile& file) {
    const std::string real = HostPath(file.path);
    if (!file.text) {
        if (::unlink(real.c_str()) != 0 && errno != ENOENT)
            throw HostCtlException("Cannot remove " + file.path + ": " + std::strerror(errno));
        return;
    }
    try {
        Sim::ReplaceFile(real, *file.text, 0644);
    } catch (const std::exception& error) {
        throw HostCtlException(error.what());
    }
}

}  // namespace

FileChangeRecord::FileChangeRecord(AfterPutBack afterPutBack)
    : afterPutBack_(std::move(afterPutBack)) {}

void FileChangeRecord::Begin(ChangeKind kind) const {
    if (Load()) throw HostCtlException("Another change of the host is not finished");
    Record record;
    record.kind = kind;
    record.owner = static_cast<int>(::getpid());
    if (IsNetworkKind(kind)) {
        record.ours = true;
        for (const auto& path : OurInstalledPaths()) record.files.push_back(Keep(path));
        record.files.push_back(Keep("/etc/hostname"));
        // A resolv.conf that is a link belongs to the resolver service and is
        // never rewritten; only a plain file can be one the backend wrote.
        struct stat st {};
        if (::lstat(HostPath("/etc/resolv.conf").c_str(), &st) != 0 || S_ISREG(st.st_mode))
            record.files.push_back(Keep("/etc/resolv.conf"));
    }
    Save(record);
    if (!record.ours) return;
    try {
        BeginTrial();
    } catch (const HostCtlException&) {
        DropTrial();
        Finish();
        throw;
    }
}

void FileChangeRecord::SetRevertAt(std::int64_t revertAt) const {
    auto record = Load();
    if (!record) throw HostCtlException("No change is recorded");
    record->revertAt = revertAt;
    Save(*record);
}

void FileChangeRecord::Finish() const {
    try {
        KeepTrial();
    } catch (const HostCtlException& error) {
        // The record stays: the next start puts the previous network back.
        Tesk::Platform::Log(LOG_ERR, "Keeping the network change failed: %s", error.what());
        return;
    }
    if (::unlink(HostPath(kChangeRecordFile).c_str()) != 0 && errno != ENOENT)
        Tesk::Platform::Log(LOG_ERR, "Removing %s failed: %s", kChangeRecordFile,
                            std::strerror(errno));
}

void FileChangeRecord::PutBack() const {
    auto record = Load();
    if (!record) return;
    if (record->ours) {
        DropTrial();
        for (const auto& path : OurInstalledPaths()) {
            bool kept = false;
            for (const auto& file : record->files) kept = kept || file.path == path;
            if (!kept) Restore({path, std::nullopt});
        }
    }
    for (const auto& file : record->files) Restore(file);
    if (afterPutBack_) afterPutBack_(record->kind);
    Finish();
}

std::optional<HostCtl::Changes::PendingChange> FileChangeRecord::Pending() const {
    auto record = Load();
    if (!record) return std::nullopt;
    HostCtl::Changes::PendingChange change;
    change.kind = record->kind;
    change.owner = record->owner;
    change.revertAt = record->revertAt;
    change.ownerRunning = change.owner > 0 && (::kill(change.owner, 0) == 0 || errno == EPERM);
    return change;
}

}  // namespace LinuxHost
