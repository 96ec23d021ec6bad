#include "linuxhost/networkd_trial.h"

#include <dirent.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <set>

#include "linuxhost/fail.h"
#include "platform/hostroot.h"
#include "platform/regular_file.h"
#include "store/replace_file.h"

namespace LinuxHost {
namespace {

using Tesk::Platform::HostPath;

// The first line of a trial file that stands for a dropped one.
constexpr char kNothingLine[] = "# Nothing on this link while a change is on trial.\n";

std::string Rest(const std::string& name, const char* prefix) {
    return name.substr(std::strlen(prefix));
}

std::string TrialName(const std::string& name) {
    return kTrialFilePrefix + Rest(name, kOurFilePrefix);
}

// The names in dir that start with prefix.
std::vector<std::string> NamesPrefixed(const char* dir, const char* prefix) {
    std::vector<std::string> names;
    std::unique_ptr<DIR, int (*)(DIR*)> listing(::opendir(HostPath(dir).c_str()), ::closedir);
    if (!listing) return names;
    while (const dirent* entry = ::readdir(listing.get()))
        if (std::strncmp(entry->d_name, prefix, std::strlen(prefix)) == 0)
            names.emplace_back(entry->d_name);
    return names;
}

// The regular files of dir whose names start with prefix, by name.
NetworkdFiles ReadPrefixed(const char* dir, const char* prefix) {
    NetworkdFiles files;
    const std::string real = HostPath(dir);
    for (const auto& name : NamesPrefixed(dir, prefix))
        if (auto text = Tesk::Platform::ReadRegularFile(real + "/" + name, nullptr, 65536))
            files[name] = *text;
    return files;
}

void Write(const char* dir, const std::string& name, const std::string& text) {
    try {
        Sim::ReplaceFile(HostPath(std::string(dir) + "/" + name), text, 0644);
    } catch (const std::runtime_error& error) {
        Fail(std::string("Writing ") + dir + "/" + name + " failed: " + error.what());
    }
}

void Remove(const std::string& path) {
    if (::unlink(HostPath(path).c_str()) != 0 && errno != ENOENT)
        Fail("Removing " + path + " failed: " + std::strerror(errno));
}

// A .network file that matches the links text matches and configures nothing
// on them: networkd takes it before the dropped file of the same link.
std::string Nothing(const std::string& text) {
    std::string out = kNothingLine;
    bool match = false;
    std::size_t at = 0;
    while (at < text.size()) {
        std::size_t end = text.find('\n', at);
        if (end == std::string::npos) end = text.size();
        const std::string line = text.substr(at, end - at);
        at = end + 1;
        if (!line.empty() && line.front() == '[') match = line == "[Match]";
        if (match) out += line + "\n";
    }
    return out + "\n[Network]\nLinkLocalAddressing=no\nIPv6AcceptRA=no\n";
}

bool IsNetworkFile(const std::string& name) {
    return name.ends_with(".network");
}

void RemoveTrialFiles() {
    for (const auto& name : NamesPrefixed(kNetworkdRunDir, kTrialFilePrefix))
        Remove(std::string(kNetworkdRunDir) + "/" + name);
}

}  // namespace

NetworkdFiles ReadOurInstalledFiles() {
    return ReadPrefixed(kNetworkdDir, kOurFilePrefix);
}

std::vector<std::string> OurInstalledPaths() {
    std::vector<std::string> paths;
    for (const auto& name : NamesPrefixed(kNetworkdDir, kOurFilePrefix))
        paths.push_back(std::string(kNetworkdDir) + "/" + name);
    return paths;
}

NetworkdFiles ReadOurFiles() {
    if (!OnTrial()) return ReadOurInstalledFiles();
    NetworkdFiles files;
    for (const auto& [name, text] : ReadPrefixed(kNetworkdRunDir, kTrialFilePrefix))
        if (text.rfind(kNothingLine, 0) != 0)
            files[kOurFilePrefix + Rest(name, kTrialFilePrefix)] = text;
    return files;
}

void WriteOurFiles(const NetworkdFiles& files) {
    if (!OnTrial()) {
        for (const auto& [name, text] : files) Write(kNetworkdDir, name, text);
        for (const auto& [name, text] : ReadOurInstalledFiles())
            if (!files.contains(name)) Remove(std::string(kNetworkdDir) + "/" + name);
        return;
    }
    std::set<std::string> trial;
    for (const auto& [name, text] : files) {
        Write(kNetworkdRunDir, TrialName(name), text);
        trial.insert(TrialName(name));
    }
    // A dropped .netdev needs nothing: its link goes with the file that
    // named it, or stays as networkd leaves links of removed .netdev files.
    for (const auto& [name, text] : ReadOurInstalledFiles())
        if (!files.contains(name) && IsNetworkFile(name)) {
            Write(kNetworkdRunDir, TrialName(name), Nothing(text));
            trial.insert(TrialName(name));
        }
    for (const auto& name : NamesPrefixed(kNetworkdRunDir, kTrialFilePrefix))
        if (!trial.contains(name)) Remove(std::string(kNetworkdRunDir) + "/" + name);
}

bool OnTrial() {
    return ::access(HostPath(kTrialMarker).c_str(), F_OK) == 0;
}

void BeginTrial() {
    std::error_code ignored;  // a host root need not have these folders yet
    std::filesystem::create_directories(HostPath(kNetworkdRunDir), ignored);
    std::filesystem::create_directories(std::filesystem::path(HostPath(kTrialMarker)).parent_path(),
                                        ignored);
    RemoveTrialFiles();
    for (const auto& [name, text] : ReadOurInstalledFiles())
        Write(kNetworkdRunDir, TrialName(name), text);
    try {
        Sim::ReplaceFile(HostPath(kTrialMarker), "", 0644);
    } catch (const std::runtime_error& error) {
        Fail(std::string("Marking the network change as on trial failed: ") + error.what());
    }
}

void KeepTrial() {
    if (!OnTrial()) return;
    const NetworkdFiles files = ReadOurFiles();
    Remove(kTrialMarker);
    WriteOurFiles(files);
    RemoveTrialFiles();
}

void DropTrial() {
    RemoveTrialFiles();
    Remove(kTrialMarker);
}

}  // namespace LinuxHost
