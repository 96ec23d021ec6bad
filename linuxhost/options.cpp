#include "linuxhost/options.h"

#include <sys/stat.h>

#include <filesystem>
#include <map>
#include <sstream>
#include <stdexcept>

#include "platform/hostroot.h"
#include "platform/regular_file.h"
#include "platform/syslog.h"
#include "store/replace_file.h"

namespace LinuxHost::Options {
namespace {

// What a value must look like; anything else gives the default.
enum class Kind {
    Text,        // any text but an empty one
    MaybeEmpty,  // any text, none included
    Seconds,     // a whole number of seconds, 0 to one day
    Path,        // an absolute path
};

struct Option {
    const char* key;
    const char* fallback;
    Kind kind = Kind::Text;
};

// Every option the backend knows, with its default.
const Option kOptions[] = {
    {"libvirt.uri", "qemu:///system"},
    {"console.idle-timeout", "600", Kind::Seconds},
    {"support.tls-certificate", "/etc/pki/libvirt/servercert.pem", Kind::Path},
    {"machines.shutdown_seconds", "60", Kind::Seconds},
    {"units.ssh", "ssh.service"},
    {"units.shell", "getty@tty2.service"},
    {"units.agents", "virtlogd.service virtlockd.service libvirtd.service"},
    {"network.bridge", "br0"},
    {"network.domain", "", Kind::MaybeEmpty},
};

bool Valid(Kind kind, const std::string& value) {
    switch (kind) {
        case Kind::Text:
            return !value.empty();
        case Kind::MaybeEmpty:
            return true;
        case Kind::Seconds:
            return !value.empty() && value.size() <= 5 &&
                   value.find_first_not_of("0123456789") == std::string::npos &&
                   std::stol(value) <= 86400;
        case Kind::Path:
            return !value.empty() && value.front() == '/';
    }
    return false;
}

const Option* Find(std::string_view key) {
    for (const auto& option : kOptions)
        if (key == option.key) return &option;
    return nullptr;
}

std::string Trim(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    const auto last = text.find_last_not_of(" \t\r");
    return std::string(text.substr(first, last - first + 1));
}

// The file's key=value lines; comments (#) and blank lines left out.
std::map<std::string, std::string> ReadAll() {
    std::map<std::string, std::string> values;
    const auto text = Tesk::Platform::ReadRegularFile(Tesk::Platform::HostPath(kOptionsFile));
    if (!text) return values;
    std::istringstream lines(*text);
    for (std::string line; std::getline(lines, line);) {
        const std::string trimmed = Trim(line);
        if (trimmed.empty() || trimmed.front() == '#') continue;
        const auto equals = trimmed.find('=');
        if (equals == std::string::npos) {
            Tesk::Platform::Log(LOG_WARNING, "%s: ignoring line without '=': %s", kOptionsFile,
                                trimmed.c_str());
            continue;
        }
        values[Trim(std::string_view(trimmed).substr(0, equals))] =
            Trim(std::string_view(trimmed).substr(equals + 1));
    }
    return values;
}

}  // namespace

std::optional<std::string> Text(std::string_view key) {
    const Option* option = Find(key);
    if (option == nullptr) return std::nullopt;
    const auto values = ReadAll();
    const auto found = values.find(std::string(key));
    if (found == values.end()) return std::string(option->fallback);
    if (!Valid(option->kind, found->second)) {
        Tesk::Platform::Log(LOG_WARNING, "%s: %s=%s is not valid; using %s", kOptionsFile,
                            option->key, found->second.c_str(), option->fallback);
        return std::string(option->fallback);
    }
    return found->second;
}

bool Set(std::string_view key, std::string_view value) {
    const Option* option = Find(key);
    if (option == nullptr) {
        Tesk::Platform::Log(LOG_ERR, "Unknown option %.*s not set", static_cast<int>(key.size()),
                            key.data());
        return false;
    }
    if (!Valid(option->kind, std::string(value)) || value.find('\n') != std::string_view::npos) {
        Tesk::Platform::Log(LOG_ERR, "Option %s not set: %.*s is not valid", option->key,
                            static_cast<int>(value.size()), value.data());
        return false;
    }
    auto values = ReadAll();
    values[std::string(key)] = std::string(value);
    std::string text;
    for (const auto& [name, setting] : values) text += name + "=" + setting + "\n";
    const std::string path = Tesk::Platform::HostPath(kOptionsFile);
    try {
        std::error_code ignored;  // a missing folder fails the write below
        std::filesystem::create_directories(Tesk::Platform::HostPath("/etc/tesk"), ignored);
        Sim::ReplaceFile(path, text, 0644);
    } catch (const std::runtime_error& error) {
        Tesk::Platform::Log(LOG_ERR, "Writing %s failed: %s", kOptionsFile, error.what());
        return false;
    }
    return true;
}

}  // namespace LinuxHost::Options
