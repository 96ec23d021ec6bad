#include "linuxhost/options.h"

#include <sys/stat.h>

#include <map>
#include <sstream>
#include <stdexcept>

#include "platform/hostroot.h"
#include "platform/regular_file.h"
#include "platform/syslog.h"
#include "store/replace_file.h"

namespace LinuxHost::Options {
namespace {

struct Option {
    const char* key;
    const char* fallback;
};

// Every option the backend knows, with its default.
const Option kOptions[] = {
    {"libvirt.uri", "qemu:///system"},
    {"network.bridge", "br0"},
    {"network.domain", ""},
};

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
    if (found == values.end() || found->second.empty()) return std::string(option->fallback);
    return found->second;
}

bool Set(std::string_view key, std::string_view value) {
    if (Find(key) == nullptr) {
        Tesk::Platform::Log(LOG_ERR, "Unknown option %.*s not set", static_cast<int>(key.size()),
                            key.data());
        return false;
    }
    auto values = ReadAll();
    values[std::string(key)] = std::string(value);
    std::string text;
    for (const auto& [name, setting] : values) text += name + "=" + setting + "\n";
    const std::string path = Tesk::Platform::HostPath(kOptionsFile);
    try {
        ::mkdir(Tesk::Platform::HostPath("/etc/tesk").c_str(), 0755);
        Sim::ReplaceFile(path, text, 0644);
    } catch (const std::runtime_error& error) {
        Tesk::Platform::Log(LOG_ERR, "Writing %s failed: %s", kOptionsFile, error.what());
        return false;
    }
    return true;
}

}  // namespace LinuxHost::Options
